#pragma once

namespace brindle::platform {

/// Registers the function that is called at the end of each thread that has requested it with
/// `CallAtThreadEnd`. False if the system has no slot for it. Called once in a process.
bool SetThreadEndCall(void (*inCall)(void* inArgument)) noexcept;

/// Requests that the function is called with this argument, which is not null, when the calling
/// thread ends: after the destructors of its thread-local objects, and in the same phase as those
/// of thread-specific data. A thread may request it again during that phase. False without memory.
bool CallAtThreadEnd(void* inArgument) noexcept;

} // namespace brindle::platform
