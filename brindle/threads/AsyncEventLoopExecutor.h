#pragma once

#include <brindle/Export.h>
#include <brindle/threads/AsyncExecutor.h>

#include <boost/smart_ptr/shared_ptr.hpp>

#include <string>

namespace brindle::threads {

/// An executor with a thread of its own that runs a loop; it shuts down with its last reference,
/// which may go on any thread. Functions run as told for `AsyncEventLoopAdaptor`.
///
/// Operations wait for the thread to be ready first. Should it find no resources for its loop, that
/// is reported on it, and the executor is as after `Shutdown`.
class BRN_API AsyncEventLoopExecutor : public AsyncExecutor {
public:
    /// As `AsyncEventLoopAdaptor::Drain`; nothing after `Shutdown`. A function that runs in it may
    /// call `Shutdown`.
    virtual void Drain() = 0;

    /// Accepts nothing more. Immediate functions that were accepted still run, and an exception
    /// from one does not keep the others from it; delayed ones that are not due are released. Does
    /// not wait for the thread.
    virtual void Shutdown() = 0;
    virtual bool IsShutdown() = 0;

    /// Blocks until the thread has ended, for which somebody calls `Shutdown`. Nothing when called
    /// on the executor's own thread.
    virtual void Join() = 0;
};

/// Starts a thread of this name that runs a loop. A thread that cannot be made is reported and
/// thrown as for `Thread`.
BRN_API boost::shared_ptr<AsyncEventLoopExecutor>
CreateAsyncEventLoopExecutor(std::string const& inName);

} // namespace brindle::threads
