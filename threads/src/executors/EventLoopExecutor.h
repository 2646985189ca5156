#pragma once

#include <brindle/threads/AsyncEventLoopExecutor.h>
#include <brindle/threads/Thread.h>

#include "threads/src/executors/EventLoopAdaptor.h"
#include "threads/src/executors/MessageLoop.h"
#include "threads/src/locks/Gate.h"
#include "threads/src/locks/ReadWriteLock.h"

#include <boost/noncopyable.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/thread/mutex.hpp>

#include <string>

namespace brindle::threads {

/// Runs a loop on a thread of its own, with an adaptor on it.
class EventLoopExecutor : public AsyncEventLoopExecutor, boost::noncopyable {
public:
    explicit EventLoopExecutor(std::string const& inName);
    ~EventLoopExecutor() override;

    bool Post(boost::function0<void> const& inFunction, std::uint32_t inDelayMilliseconds) override;
    bool IsCurrentThreadExecutorThread() override;
    std::int32_t GetThreadCount() override { return 1; }
    void Drain() override;
    void Shutdown() override;
    bool IsShutdown() override;
    void Join() override;

private:
    /// What the thread has in common with its executor, which it may outlive.
    struct Shared {
        Gate ready{false};
        ReadWriteLock lock; // guards what follows
        boost::shared_ptr<EventLoopAdaptor> adaptor;
        boost::shared_ptr<MessageLoop> loop;
    };

    static void RunThread(boost::shared_ptr<Shared> const& inShared);
    /// The adaptor, or null after a shutdown. Waits until the thread is ready; the lock is held
    /// again when it returns.
    boost::shared_ptr<EventLoopAdaptor> Adaptor(SharedGuard& ioHeld);

    boost::shared_ptr<Shared> const mShared;
    boost::mutex mJoining;
    Thread mThread;
};

} // namespace brindle::threads
