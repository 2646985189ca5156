#pragma once

#include <string>

namespace brindle::host {

/// A name or a text as a single line of valid UTF-8 that no terminal takes for a command: control
/// characters are written as "\t", "\n", "\r" or "\u001b", and bytes that are not UTF-8 as "\xff".
/// The characters of `inMarked`, of ASCII, get a backslash in front; the backslash has to be among
/// them if the text is to be read back.
std::string EscapedText(std::string const& inText, std::string const& inMarked = "\\");

} // namespace brindle::host
