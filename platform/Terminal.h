#pragma once

namespace brindle::platform {

enum class StandardStream { kInput, kOutput, kError };

/// Whether the process's standard stream is connected to a terminal.
bool IsTerminal(StandardStream inStream) noexcept;

} // namespace brindle::platform
