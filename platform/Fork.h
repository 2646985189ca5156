#pragma once

namespace brindle::platform {

/// Registers functions for every fork of this process: `inPrepare` is called before it by the
/// thread that forks, `inParent` after it in the parent process, and `inChild` in the child
/// process, whose only thread is a copy of the one that forked. False if there is no memory.
[[nodiscard]] bool OnFork(void (*inPrepare)(), void (*inParent)(), void (*inChild)()) noexcept;

} // namespace brindle::platform
