#pragma once

#include <brindle/Export.h>
#include <brindle/threads/AsyncExecutor.h>

#include <boost/smart_ptr/shared_ptr.hpp>

#include <string>

namespace brindle::threads {

/// An executor with one thread of its own, of normal priority, that runs a loop. Functions run as
/// described for `AsyncEventLoopAdaptor`. A function may run a loop of its own, as a modal dialog
/// does; it ends that loop when `DispatchMessages` is false. The executor shuts down when its last
/// reference is released, on whatever thread that happens.
///
/// Operations wait until the thread is ready. If the thread finds no resources for its loop, it
/// reports that, and the executor is as after `Shutdown`.
class BRN_API AsyncEventLoopExecutor : public AsyncExecutor {
public:
    /// As `AsyncEventLoopAdaptor::Drain`; does nothing after `Shutdown`. A function that runs in it
    /// may call `Shutdown`.
    virtual void Drain() = 0;

    /// Accepts no more functions. Immediate functions that were accepted still run, even if one of
    /// them throws; delayed functions that are not due are released. Does not wait for the thread.
    virtual void Shutdown() = 0;
    /// True from `Shutdown` on.
    virtual bool IsShutdown() = 0;

    /// Blocks until the thread has ended, which it does after `Shutdown`. Returns at once when
    /// called on the executor's own thread.
    virtual void Join() = 0;
};

/// Starts a thread of this name that runs a loop. A thread that cannot be started is reported and
/// thrown as described for `Thread`.
[[nodiscard]] BRN_API boost::shared_ptr<AsyncEventLoopExecutor>
CreateAsyncEventLoopExecutor(std::string const& inName);

} // namespace brindle::threads
