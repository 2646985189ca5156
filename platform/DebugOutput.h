#pragma once

namespace brindle::platform {

/// Sends NUL-terminated text to the developer's debug channel, standard error, as it is and in one
/// piece. Any thread may call; a failure is ignored.
void WriteDebugOutput(char const* inText) noexcept;

} // namespace brindle::platform
