#pragma once

#include <brindle/Export.h>
#include <brindle/threads/AsyncExecutor.h>
#include <brindle/threads/ThreadPriority.h>

#include <boost/smart_ptr/shared_ptr.hpp>

#include <string>

namespace brindle::threads {

/// An executor with a pool of worker threads. Immediate items start in the order of posting and run
/// side by side; delays are measured on the system's clock. It shuts down with its last reference.
class BRN_API AsyncThreadedExecutor : public AsyncExecutor {
public:
    /// Accepts nothing more. Immediate items that were accepted still run, delayed ones are dropped
    /// unless a worker has found them due; a suspended pool is resumed. Does not wait for the
    /// workers. Nothing when called on a worker of this executor. Throws `std::bad_alloc`, and then
    /// has done nothing.
    virtual void Shutdown() = 0;
    virtual bool IsShutdown() = 0;

    /// Blocks until every immediate item posted before has finished; after `Shutdown`, until the
    /// workers have ended. Nothing when called on a worker of this executor. Throws
    /// `std::bad_alloc`, and then nobody waits.
    virtual void Synchronize() = 0;

    /// Each worker stops before its next item until `Resume`; running items go on.
    virtual void Suspend() = 0;
    virtual void Resume() = 0;
    /// Blocks while the executor is suspended; `Shutdown` ends the wait.
    virtual void WaitUntilResumed() = 0;
};

/// Starts a pool whose workers all bear this name and have this priority. A count of -1 means one
/// worker for each processor; with 0 or a lower one there are none, and items are accepted and
/// never run. A thread that cannot be made is reported and thrown as for `Thread`.
BRN_API boost::shared_ptr<AsyncThreadedExecutor>
CreateAsyncThreadedExecutor(std::string const& inName, int inThreadCount,
                            ThreadPriority inPriority);

} // namespace brindle::threads
