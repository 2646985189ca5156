#pragma once

#include <brindle/Export.h>

namespace brindle::threads {

/// For a thread whose loop is its own, or that of another library: how it serves the executors that
/// `AdaptCurrentEventLoopAsExecutor` makes of it. The loop watches the descriptor, and calls
/// `DispatchMessages` when it is readable. A forked child has no loop: it shares the descriptor
/// with its parent, and must leave it alone.

/// The descriptor of the calling thread's messages. It is readable as long as some wait. It is for
/// watching alone, with `poll` or the like, and lasts until the thread ends. That the system has no
/// more descriptors is reported through `config::ThrowError`, and is a
/// `boost::thread_resource_error` if the report returns; `std::bad_alloc`.
BRN_API int EventLoopDescriptor();

/// Handles the messages that wait for the calling thread now, each of which runs at most one
/// function, and does not block. What comes meanwhile is left to the next call. A function may call
/// it, too. Throws as `EventLoopDescriptor`.
BRN_API void DispatchMessages();

} // namespace brindle::threads
