#pragma once

#include <string>
#include <vector>

namespace brindle::platform {

/// Whether the process may show windows: the environment names a display, and the process does not
/// run with more rights than its user has.
bool HasDisplay() noexcept;

/// The paths, in the system's form, at which the program that shows the library's dialogs may be
/// installed, the best first: relative to the library's own file, then the path that was chosen
/// when the library was built.
std::vector<std::string> DialogPrograms();

} // namespace brindle::platform
