#pragma once

namespace brindle::platform {

enum class StandardStream { kInput, kOutput, kError };

/// True if the process's standard stream leads to a terminal.
bool IsTerminal(StandardStream inStream) noexcept;

} // namespace brindle::platform
