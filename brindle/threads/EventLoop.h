#pragma once

#include <brindle/Export.h>

/// How a thread serves its executors (`AdaptCurrentEventLoopAsExecutor`) from a loop of its own or
/// of another library: the loop watches the descriptor, and calls `DispatchMessages` when it is
/// readable.
///
///     pollfd watched{EventLoopDescriptor(), POLLIN, 0};
///     while (poll(&watched, 1, -1) > 0) { DispatchMessages(); }

namespace brindle::threads {

/// The descriptor of the calling thread's messages: readable as long as messages wait, and open
/// until the thread ends. It is only for watching, with `poll` or the like. A forked child must not
/// use it, because it is the same as the parent's.
///
/// A lack of descriptors is reported through `config::ThrowError`, and throws
/// `boost::thread_resource_error` if the report returns. Throws `std::bad_alloc`.
[[nodiscard]] BRN_API int EventLoopDescriptor();

/// Handles the messages that wait for the calling thread now; each runs at most one function. Does
/// not block. Messages that arrive meanwhile are left to the next call. A function that runs in it
/// may call it. Throws as `EventLoopDescriptor`.
BRN_API void DispatchMessages();

} // namespace brindle::threads
