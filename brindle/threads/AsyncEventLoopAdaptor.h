#pragma once

#include <brindle/Export.h>
#include <brindle/threads/AsyncExecutor.h>

#include <boost/smart_ptr/shared_ptr.hpp>

namespace brindle::threads {

/// An executor on the loop of the thread that made it. Immediate functions run in the order of
/// posting, on a later turn of the loop and never inside `Post`; delayed ones when they are due, on
/// the system's clock.
///
/// With its last reference, which may go on any thread and in a function that it runs, all that has
/// not begun is released, and never runs.
class BRN_API AsyncEventLoopAdaptor : public AsyncExecutor {
public:
    /// Runs the immediate functions that wait, on the calling thread, until none is left. An
    /// exception from one of them ends the drain and reaches the caller. Delayed functions are left
    /// to the loop.
    virtual void Drain() = 0;
};

/// Makes an executor of the calling thread, which goes on to handle messages: see `EventLoop.h`. A
/// thread may have any number of them. When the thread ends, they accept nothing any more: delayed
/// functions are released when they are due; immediate ones are left to `Drain`, also one that
/// `Post` refused then.
///
/// That the system has no more threads or descriptors is reported through `config::ThrowError`, and
/// is a `boost::thread_resource_error` if the report returns; `std::bad_alloc`.
BRN_API boost::shared_ptr<AsyncEventLoopAdaptor> AdaptCurrentEventLoopAsExecutor();

} // namespace brindle::threads
