#pragma once

#include <cstdint>

namespace brindle::platform {

/// Registers functions for every fork of this process: `inPrepare` is called before it by the
/// thread that forks, `inParent` after it in the parent process, and `inChild` in the child
/// process, whose only thread is a copy of the one that forked. Each may be null. False if there is
/// no memory.
[[nodiscard]] bool OnFork(void (*inPrepare)(), void (*inParent)(), void (*inChild)()) noexcept;

/// A number that is one higher in a forked child than in its parent. What remembers it can tell
/// that it was made by a process whose other threads do not exist here. Counts from the first call
/// on.
std::uint32_t ForkCount() noexcept;

} // namespace brindle::platform
