#pragma once

#include <brindle/threads/AsyncThreadedExecutor.h>
#include <brindle/threads/Thread.h>

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

    void StartWorkers(boost::shared_ptr<ThreadSafeDelayQueue> const& inQueue,
                      std::string const& inName, int inThreadCount, ThreadPriority inPriority);
    void JoinWorkers();
    void Close() noexcept;
    [[nodiscard]] boost::shared_ptr<Meeting> CallMeeting();

    ReadWriteLock mQueueLock;
    boost::shared_ptr<ThreadSafeDelayQueue>
        mQueue BRN_GUARDED_BY(mQueueLock); // null after a shutdown
    utility::Mutex mSynchronizeMutex;
    bool mIsJoined BRN_GUARDED_BY(mSynchronizeMutex) = false;
    std::vector<std::unique_ptr<Thread>> mThreads; // not changed after the constructor
    boost::shared_ptr<Gate> mGate;
};

} // namespace brindle::threads
