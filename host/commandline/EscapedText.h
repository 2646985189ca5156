#pragma once

#include <string>

namespace brindle::host {

/// A name as a single line: a backslash, a newline and a carriage return are written as "\\", "\n"
/// and "\r".
std::string EscapedName(std::string const& inName);

/// Any UTF-8 text as a single line that no terminal takes for a command: backslashes and the
/// characters of `inOthers` get a backslash in front of them, and control characters are written as
/// "\t", "\n", "\r" or "\u001b".
std::string EscapedText(std::string const& inText, std::string const& inOthers = {});

} // namespace brindle::host
