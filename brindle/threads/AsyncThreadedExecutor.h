#pragma once

#include <brindle/Export.h>
#include <brindle/threads/AsyncExecutor.h>
#include <brindle/threads/ThreadPriority.h>

#include <boost/smart_ptr/shared_ptr.hpp>

#include <string>

namespace brindle::threads {

/// An executor with a pool of worker threads.
///
///     auto const pool = CreateAsyncThreadedExecutor("thumbnails", -1, kThreadPriorityBelowNormal);
///     pool->Post([] { /* on a worker */ }, 0);
///
/// Immediate functions, those with a delay of 0, start in the order of posting and run in parallel.
/// The executor shuts down when its last reference is
/// released, on whatever thread that happens.
///
/// Beside the standard library: there is none; `std::async` may start a thread for each call.
class BRN_API AsyncThreadedExecutor : public AsyncExecutor {
public:
    /// Accepts no more functions. Immediate functions that were accepted still run; delayed
    /// functions are dropped unless a worker has already found them to be due. Resumes a suspended
    /// pool. Does not wait for the workers. Has no effect when called on a worker of this executor.
    /// Throws `std::bad_alloc` without having done anything.
    virtual void Shutdown() = 0;
    /// True from `Shutdown` on.
    virtual bool IsShutdown() = 0;

    /// Blocks until every immediate function that was posted before has returned; after `Shutdown`,
    /// until the workers have ended. Returns at once when called on a worker of this executor.
    /// Throws `std::bad_alloc` without having blocked any thread.
    virtual void Synchronize() = 0;

    /// Until `Resume`, each worker blocks before its next function. Functions that are running are
    /// not affected.
    virtual void Suspend() = 0;
    /// Lets the workers go on after `Suspend`.
    virtual void Resume() = 0;
    /// Blocks while the executor is suspended, but no longer than until `Shutdown`.
    virtual void WaitUntilResumed() = 0;
};

/// Starts a pool whose workers all have this name and priority. A count of -1 means one worker for
/// each processor. With a count of 0 or below -1 there are no workers, and functions are accepted
/// but never run. A thread that cannot be started is reported and thrown as described for `Thread`.
[[nodiscard]] BRN_API boost::shared_ptr<AsyncThreadedExecutor>
CreateAsyncThreadedExecutor(std::string const& inName, int inThreadCount,
                            ThreadPriority inPriority);

/// The same at normal priority, with a worker for each processor unless a count is given:
/// `CreateAsyncThreadedExecutor("decoder")`.
[[nodiscard]] inline boost::shared_ptr<AsyncThreadedExecutor>
CreateAsyncThreadedExecutor(std::string const& inName, int inThreadCount = -1) {
    return CreateAsyncThreadedExecutor(inName, inThreadCount, kThreadPriorityNormal);
}

} // namespace brindle::threads
