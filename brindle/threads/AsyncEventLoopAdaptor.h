#pragma once

#include <brindle/Export.h>
#include <brindle/threads/AsyncExecutor.h>

#include <boost/smart_ptr/shared_ptr.hpp>

namespace brindle::threads {

/// An executor that runs functions on the loop of the thread that made it.
///
///     auto const loop = AdaptCurrentEventLoopAsExecutor(); // on the user interface's thread
///     pool->Post([loop] { Work(); loop->Post([] { ShowResult(); }, 0); }, 0);
///
/// Immediate functions, those with a delay of 0, run in the order of posting, on a later turn of
/// the loop and never inside `Post`. Delayed functions run when they are due.
///
/// When its last reference is released, all functions that have not begun are released and never
/// run. That may happen on any thread, also inside a function that the executor runs.
class BRN_API AsyncEventLoopAdaptor : public AsyncExecutor {
public:
    /// Runs the immediate functions that wait, on the calling thread, until none is left. An
    /// exception from one of them ends the drain and reaches the caller. Delayed functions are not
    /// affected.
    virtual void Drain() = 0;
};

/// Makes an executor of the calling thread, whose loop must handle messages as described in
/// `EventLoop.h`. A thread may have any number of adaptors. After the thread has ended, they accept
/// nothing more: delayed functions that are left are released with the adaptor; immediate functions
/// are left to `Drain`, including one that `Post` then refuses.
///
/// A lack of threads or descriptors is reported through `config::ThrowError`, and throws
/// `boost::thread_resource_error` if the report returns. Throws `std::bad_alloc`.
[[nodiscard]] BRN_API boost::shared_ptr<AsyncEventLoopAdaptor> AdaptCurrentEventLoopAsExecutor();

} // namespace brindle::threads
