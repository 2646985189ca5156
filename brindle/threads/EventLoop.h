#pragma once

#include <brindle/Export.h>

/// How a thread serves its executors (`AdaptCurrentEventLoopAsExecutor`) from a loop of its own or
/// of another library: the loop watches the descriptor, and calls `DispatchMessages` when it is
/// readable.
///
///     pollfd watched{EventLoopDescriptor(), POLLIN, 0};
///     while (DispatchMessages()) { poll(&watched, 1, -1); }
///
/// A loop that cannot watch a descriptor is woken by a function instead (`EventLoopWakeUp.h`).

namespace brindle::threads {

/// The descriptor of the calling thread's messages: readable as long as messages wait, and open
/// until the thread ends. It is only for watching, with `poll` or the like. A forked child must not
/// use the descriptor of its parent; it may ask for its own.
///
/// A lack of descriptors is reported through `config::ThrowError`, and throws
/// `boost::thread_resource_error` if the report returns. Throws `std::bad_alloc`.
[[nodiscard]] BRN_API int EventLoopDescriptor();

/// Handles the messages that wait for the calling thread now; each runs at most one function. Does
/// not block. Messages that arrive meanwhile are left to the next call. A function that runs in it
/// may call it. Throws as `EventLoopDescriptor`.
///
/// False if the thread is one of an `AsyncEventLoopExecutor` that has been shut down. A loop that a
/// function runs on such a thread, nested in the executor's own, then ends, so that the thread can;
/// nothing more is handled in it.
BRN_API bool DispatchMessages();

} // namespace brindle::threads
