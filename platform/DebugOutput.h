#pragma once

namespace brindle::platform {

/// Writes NUL-terminated text, unchanged and in one piece, to the developer's debug channel, which
/// is standard error. Any thread may call; a failure is ignored, also a pipe that nobody reads.
void WriteDebugOutput(char const* inText) noexcept;

} // namespace brindle::platform
