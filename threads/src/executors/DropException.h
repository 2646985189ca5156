#pragma once

#include <brindle/threads/DroppedException.h>

#include <string>

namespace brindle::threads {

/// Drops the exception that is being handled, after the hooks have heard of it. It came from a
/// function that was posted to the executor of this name.
void DropException(std::string const& inExecutorName) noexcept;

/// A second hook beside the host's, for a higher room that traces.
void SetDroppedExceptionTrace(DroppedExceptionHook inHook) noexcept;

} // namespace brindle::threads
