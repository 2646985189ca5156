#include "threads/src/executors/ThreadedWorkQueue.h"

#include "threads/src/threads/CurrentThreadPriority.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <boost/thread/condition.hpp>
#include <boost/thread/thread.hpp>

#include <algorithm>
#include <new>
#include <utility>

namespace brindle::threads {

namespace {

void RunWorker(boost::shared_ptr<ThreadSafeDelayQueue> const& inQueue, ThreadPriority inPriority,
               boost::shared_ptr<Gate> const& inGate) {
    SetCurrentThreadPriority(inPriority);
    while (AllocatedFunction::Pointer const item = inQueue->Dequeue()) {
        if (item->IsEmpty()) {
            continue;
        }
        inGate->Wait();
        try {
            item->Run();
        } catch (...) { // whatever a client throws is the client's
        }
    }
}

} // namespace

/// Where a number of threads wait for each other, once, unless it is called off: a `SyncPoint`
/// would keep those who came when others cannot be called.
class ThreadedWorkQueue::Meeting : boost::noncopyable {
public:
    explicit Meeting(std::size_t inCount) : mMissing(inCount) {}

    void Attend() {
        // A client's interruption of this thread is for its own waits.
        boost::this_thread::disable_interruption const uninterrupted;
        boost::mutex::scoped_lock lock(mMutex);
        if (mMissing > 0 && --mMissing == 0) {
            mIsOver.notify_all();
        }
        while (mMissing > 0) {
            mIsOver.wait(lock);
        }
    }

    void CallOff() {
        boost::mutex::scoped_lock const lock(mMutex);
        mMissing = 0;
        mIsOver.notify_all();
    }

private:
    boost::mutex mMutex;
    boost::condition mIsOver;
    std::size_t mMissing;
};

ThreadedWorkQueue::ThreadedWorkQueue(std::string const& inName, int inThreadCount,
                                     ThreadPriority inPriority)
    : mQueue(boost::make_shared<ThreadSafeDelayQueue>()), mGate(boost::make_shared<Gate>(false)) {
    try {
        StartWorkers(inName, inThreadCount, inPriority);
    } catch (...) {
        Close();
        JoinWorkers();
        throw;
    }
    // No item runs before the pool is complete.
    mGate->Open();
}

ThreadedWorkQueue::~ThreadedWorkQueue() {
    // The last reference may have gone on a worker, which ends like the others after its item.
    Close();
}

bool ThreadedWorkQueue::Post(boost::function0<void> const& inFunction,
                             std::uint32_t inDelayMilliseconds) {
    // Copying and releasing a function runs a client's code, which may shut the pool down: both
    // happen outside the lock.
    AllocatedFunction::Pointer item = AllocatedFunction::Make(inFunction);
    SharedGuard const lock(mQueueLock, true);
    return lock.IsLocked() && mQueue != nullptr && mQueue->Enqueue(item, inDelayMilliseconds);
}

bool ThreadedWorkQueue::IsCurrentThreadExecutorThread() {
    Thread const current("brindle/threads/ThreadedWorkQueue/IsCurrentThreadExecutorThread/"
                         "currentThread");
    for (auto const& thread : mThreads) {
        if (*thread == current) {
            return true;
        }
    }
    return false;
}

std::int32_t ThreadedWorkQueue::GetThreadCount() {
    return static_cast<std::int32_t>(mThreads.size());
}

void ThreadedWorkQueue::Shutdown() {
    if (!IsCurrentThreadExecutorThread()) {
        Close();
    }
}

bool ThreadedWorkQueue::IsShutdown() {
    SharedGuard const lock(mQueueLock, true);
    return !lock.IsLocked() || mQueue == nullptr;
}

void ThreadedWorkQueue::Synchronize() {
    if (IsCurrentThreadExecutorThread()) {
        return;
    }
    boost::mutex::scoped_lock const lock(mSynchronizeMutex);
    if (mIsJoined) {
        return;
    }
    if (boost::shared_ptr<Meeting> const meeting = CallMeeting()) {
        meeting->Attend();
        return;
    }
    JoinWorkers();
    mIsJoined = true;
}

void ThreadedWorkQueue::Suspend() {
    SharedGuard const lock(mQueueLock, true);
    if (lock.IsLocked() && mQueue != nullptr) {
        mGate->Close();
    }
}

void ThreadedWorkQueue::Resume() {
    SharedGuard const lock(mQueueLock, true);
    if (lock.IsLocked() && mQueue != nullptr) {
        mGate->Open();
    }
}

void ThreadedWorkQueue::WaitUntilResumed() {
    // Sleeps without the lock, which `Shutdown` needs before it opens the gate; nobody closes it
    // after that.
    if (!IsShutdown()) {
        mGate->Wait();
    }
}

void ThreadedWorkQueue::StartWorkers(std::string const& inName, int inThreadCount,
                                     ThreadPriority inPriority) {
    mThreads.reserve(static_cast<std::size_t>(std::max(inThreadCount, 0)));
    for (int i = 0; i < inThreadCount; ++i) {
        mThreads.push_back(
            std::make_unique<Thread>(inName, [queue = mQueue, inPriority, gate = mGate] {
                RunWorker(queue, inPriority, gate);
            }));
    }
}

void ThreadedWorkQueue::JoinWorkers() {
    for (auto const& thread : mThreads) {
        thread->Join();
    }
}

/// Has the workers end when they have run what is in the queue. Only the first call does anything.
void ThreadedWorkQueue::Close() noexcept {
    boost::shared_ptr<ThreadSafeDelayQueue> queue;
    {
        ExclusiveGuard const lock(mQueueLock);
        queue.swap(mQueue);
    }
    if (queue != nullptr) {
        queue->Clear();
        queue->Close();
        mGate->Open();
    }
}

/// Posts an item to each worker that keeps it until all have come, and the caller too: then they
/// have finished what was posted before. Null if the pool is shut down.
boost::shared_ptr<ThreadedWorkQueue::Meeting> ThreadedWorkQueue::CallMeeting() {
    SharedGuard const lock(mQueueLock, true);
    if (!lock.IsLocked() || mQueue == nullptr) {
        return {};
    }
    auto const meeting = boost::make_shared<Meeting>(mThreads.size() + 1);
    try {
        for (std::size_t i = 0; i < mThreads.size(); ++i) {
            AllocatedFunction::Pointer item =
                AllocatedFunction::Make([meeting] { meeting->Attend(); });
            if (!mQueue->Enqueue(item, 0)) {
                throw std::bad_alloc();
            }
        }
    } catch (...) {
        meeting->CallOff();
        throw;
    }
    return meeting;
}

} // namespace brindle::threads
