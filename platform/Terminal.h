#pragma once

#include <cstdint>

namespace brindle::platform {

enum class StandardStream { kInput, kOutput, kError };

/// Whether the process's standard stream is connected to a terminal.
bool IsTerminal(StandardStream inStream) noexcept;

/// The columns of the terminal that the stream is connected to; 0 if there is none, or the system
/// does not know.
std::uint32_t TerminalWidth(StandardStream inStream) noexcept;

} // namespace brindle::platform
