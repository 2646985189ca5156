#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/Dir.h>
#include <brindle/filesupport/File.h>

namespace brindle::filesupport {

/// The path as people of this system write it, for messages and titles: native separators, and "~"
/// in the place of the user's home, as in "~/Videos/a.mov". Well-formed text, in which U+FFFD
/// stands for what is no text in a name, so that it does not always lead back. A path that the
/// system cannot have is given in the library's form. Any thread may call unless another one
/// changes the environment.
[[nodiscard]] BRN_API UTF16String DisplayPath(File const& inFile);
[[nodiscard]] BRN_API UTF16String DisplayPath(Dir const& inDir);

} // namespace brindle::filesupport
