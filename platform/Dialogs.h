#pragma once

#include <string>
#include <vector>

namespace brindle::platform {

/// Whether the process may show windows: a display is named, and the process has no rights beyond
/// those of its user.
bool HasDisplay() noexcept;

/// Where the program that shows the library's dialogs may be, in the system's form, the likeliest
/// place first: beside the library as it was installed, then where the build was told.
std::vector<std::string> DialogPrograms();

} // namespace brindle::platform
