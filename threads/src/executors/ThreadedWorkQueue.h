#pragma once

#include <brindle/threads/AsyncThreadedExecutor.h>
#include <brindle/threads/Thread.h>

#include "platform/Fork.h"
#include "threads/src/executors/ThreadSafeDelayQueue.h"
#include "threads/src/locks/Gate.h"
#include "threads/src/locks/ReadWriteLock.h"
#include "utility/src/base/Mutex.h"

#include <boost/noncopyable.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

#include <memory>
#include <string>
#include <vector>

namespace brindle::threads {

/// A pool of workers that take their items from one queue. The workers share the queue and the
/// gate, so the pool may be destroyed while they finish.
class ThreadedWorkQueue final : public AsyncThreadedExecutor, boost::noncopyable {
public:
    ThreadedWorkQueue(std::string const& inName, int inThreadCount, ThreadPriority inPriority);
    ~ThreadedWorkQueue() override;

    bool Post(boost::function0<void> const& inFunction, std::uint32_t inDelayMilliseconds) override;
    bool IsCurrentThreadExecutorThread() override;
    std::int32_t GetThreadCount() override;

    void Shutdown() override;
    bool IsShutdown() override;
    void Synchronize() override;
    void Suspend() override;
    void Resume() override;
    void WaitUntilResumed() override;

private:
    class Meeting;

    struct State {
        ReadWriteLock queueLock;
        boost::shared_ptr<ThreadSafeDelayQueue>
            queue BRN_GUARDED_BY(queueLock); // null after a shutdown
        utility::Mutex synchronizeMutex;
        bool isJoined BRN_GUARDED_BY(synchronizeMutex) = false;
        std::vector<std::unique_ptr<Thread>> threads; // not changed after the constructor
        boost::shared_ptr<Gate> gate;
    };

    bool IsInherited() const noexcept { return platform::ForkCount() != mForkCount; }
    void StartWorkers(boost::shared_ptr<ThreadSafeDelayQueue> const& inQueue,
                      std::string const& inName, int inThreadCount, ThreadPriority inPriority);
    void JoinWorkers();
    void Close() noexcept;
    [[nodiscard]] boost::shared_ptr<Meeting> CallMeeting();

    // In a forked child the workers do not exist, and other threads may have held the locks or
    // changed what they guard. So the state is neither used nor destroyed there.
    std::uint32_t const mForkCount = platform::ForkCount();
    std::unique_ptr<State> mState = std::make_unique<State>();
};

} // namespace brindle::threads
