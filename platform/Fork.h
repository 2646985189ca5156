#pragma once

namespace brindle::platform {

/// From now on a thread that forks the process calls `inPrepare` before it, and afterwards
/// `inParent` in the process and `inChild` in its copy, where that thread is the only one. False if
/// there is no memory to remember it.
bool OnFork(void (*inPrepare)(), void (*inParent)(), void (*inChild)()) noexcept;

} // namespace brindle::platform
