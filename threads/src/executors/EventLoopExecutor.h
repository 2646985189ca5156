#pragma once

#include <brindle/threads/AsyncEventLoopExecutor.h>
#include <brindle/threads/Thread.h>

#include "threads/src/executors/EventLoopAdaptor.h"
#include "threads/src/executors/MessageLoop.h"
#include "threads/src/locks/Gate.h"
#include "threads/src/locks/ReadWriteLock.h"
#include "utility/src/base/Mutex.h"

#include <boost/noncopyable.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

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
    /// What the executor shares with its thread, which may outlive it.
    struct Shared {
        Gate ready{false}; // opens when the thread has made its adaptor and loop, or has failed to
        ReadWriteLock lock;
        boost::shared_ptr<EventLoopAdaptor> adaptor BRN_GUARDED_BY(lock);
        boost::shared_ptr<MessageLoop> loop BRN_GUARDED_BY(lock);
    };

    static void RunThread(boost::shared_ptr<Shared> const& inShared);
    /// The adaptor; null after a shutdown. Waits until the thread is ready.
    boost::shared_ptr<EventLoopAdaptor> Adaptor();

    boost::shared_ptr<Shared> const mShared;
    utility::Mutex mJoining; // held by the thread that joins
    Thread mThread;
};

} // namespace brindle::threads
