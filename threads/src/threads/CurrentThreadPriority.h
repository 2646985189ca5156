#pragma once

#include <brindle/threads/ThreadPriority.h>

namespace brindle::threads {

/// Sets the priority of the calling thread; a value outside the enumeration counts as normal.
void SetCurrentThreadPriority(ThreadPriority inPriority);

/// What the platform takes for it.
std::int32_t PlatformPriority(ThreadPriority inPriority);

} // namespace brindle::threads
