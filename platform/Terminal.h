#pragma once

#include <cstdint>

namespace brindle::platform {

enum class StandardStream { kInput, kOutput, kError };

/// Whether the process's standard stream is connected to a terminal.
bool IsTerminal(StandardStream inStream) noexcept;

/// The columns of the terminal that the stream is connected to; 0 if there is none, or the system
/// does not know.
std::uint32_t TerminalWidth(StandardStream inStream) noexcept;

/// Opens every standard stream that is closed in such a way that using it still fails, so that no
/// file that is opened later takes its place. To be called before any file is opened.
void ReserveStandardStreams() noexcept;

} // namespace brindle::platform
