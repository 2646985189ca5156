#pragma once

#include <optional>
#include <string>

namespace brindle::platform {

/// Writes the text to the controlling terminal and returns the next line that is typed, without its
/// line feed. What was typed before is dropped. Returns nothing if the process is not in the
/// foreground of a terminal, or if the input ends.
///
/// Does not use the standard streams. A terminal in raw mode is set to show and edit lines, and
/// gets its former settings back afterwards. One thread may call at a time.
std::optional<std::string> AskAtControllingTerminal(std::string const& inText);

} // namespace brindle::platform
