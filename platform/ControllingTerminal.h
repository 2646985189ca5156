#pragma once

#include <optional>
#include <string>

namespace brindle::platform {

/// Writes the text to the controlling terminal and returns the next line that is typed, without its
/// line feed. What was typed before the text appeared is dropped. Does not touch the standard
/// streams; a terminal whose user does not see or edit the line gets its former settings back
/// afterwards. Nothing if the process is not in the foreground of one, or the user or the
/// terminal ends the input.
///
/// A caller lets no other thread ask until it has an answer.
std::optional<std::string> AskAtControllingTerminal(std::string const& inText);

} // namespace brindle::platform
