#pragma once

#include <brindle/threads/AsyncEventLoopExecutor.h>
#include <brindle/threads/Thread.h>

#include "platform/Fork.h"
#include "threads/src/executors/EventLoopAdaptor.h"
#include "threads/src/executors/MessageLoop.h"
#include "threads/src/locks/Gate.h"
#include "threads/src/locks/ReadWriteLock.h"
#include "utility/src/base/Mutex.h"

#include <boost/noncopyable.hpp>
#include <boost/smart_ptr/make_shared.hpp>

#include <memory>
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

    bool IsInherited() const noexcept { return platform::ForkCount() != mForkCount; }
    static void RunThread(boost::shared_ptr<Shared> const& inShared, std::string const& inName);
    /// The adaptor; null after a shutdown, and in a forked child. Waits until the thread is ready.
    boost::shared_ptr<EventLoopAdaptor> Adaptor();

    struct State {
        boost::shared_ptr<Shared> const shared = boost::make_shared<Shared>();
        utility::Mutex joining; // held by the thread that joins
        Thread thread;

        explicit State(std::string const& inName);
    };

    // In a forked child the thread does not exist, and neither may threads that held the locks. So
    // the state is neither used nor destroyed there.
    std::uint32_t const mForkCount = platform::ForkCount();
    std::unique_ptr<State> mState;
};

} // namespace brindle::threads
