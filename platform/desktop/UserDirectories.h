#pragma once

#include <string>
#include <string_view>

namespace brindle::platform {

/// The value of a key such as "XDG_DOCUMENTS_DIR" in the content of the file "user-dirs.dirs", with
/// `inHome` in the place of "$HOME". A value is an absolute path, or one below "$HOME", in double
/// quotes with the shell's backslashes. The last line that has one counts; empty if none does, or
/// if the value needs a home and `inHome` is empty.
std::string UserDirectory(std::string_view inContent, std::string_view inKey,
                          std::string_view inHome);

} // namespace brindle::platform
