#pragma once

namespace brindle::platform {

/// Names a function that is called at the end of each thread that has asked for it. False if the
/// system has no room for it. Called once a process, for one function.
bool SetThreadEndCall(void (*inCall)(void* inArgument)) noexcept;

/// The function will be called with this argument, which is not null, when the calling thread ends:
/// after the destructors of its thread-local objects, among those of thread-specific data. A thread
/// may ask again while these run. False if there is no memory for it.
bool CallAtThreadEnd(void* inArgument) noexcept;

} // namespace brindle::platform
