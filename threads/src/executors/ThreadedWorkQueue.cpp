#include "threads/src/executors/ThreadedWorkQueue.h"

#include "threads/src/executors/DropException.h"
#include "threads/src/threads/CurrentThreadPriority.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <algorithm>
#include <new>
#include <utility>

namespace brindle::threads {

namespace {

void RunWorker(boost::shared_ptr<ThreadSafeDelayQueue> const& inQueue, std::string const& inName,
               ThreadPriority inPriority, boost::shared_ptr<Gate> const& inGate) {
    SetCurrentThreadPriority(inPriority);
    while (AllocatedFunction::Pointer const item = inQueue->Dequeue()) {
        if (item->IsEmpty()) {
            continue;
        }
        inGate->Wait();
        try {
            item->Run();
        } catch (...) {
            DropException(inName);
        }
    }
}

} // namespace

/// A single meeting of a number of threads, each of which blocks until all have come or the meeting
/// is called off. A `SyncPoint` cannot be called off, and would block the threads that came forever
/// if the others cannot be called.
class ThreadedWorkQueue::Meeting : boost::noncopyable {
public:
    explicit Meeting(std::size_t inCount) : mMissing(inCount) {}

    void Attend() {
        utility::MutexLock lock(mMutex);
        if (mMissing > 0 && --mMissing == 0) {
            mIsOver.NotifyAll();
        }
        while (mMissing > 0) {
            mIsOver.Wait(lock);
        }
    }

    void CallOff() {
        utility::MutexLock const lock(mMutex);
        mMissing = 0;
        mIsOver.NotifyAll();
    }

private:
    utility::Mutex mMutex;
    utility::Condition mIsOver;
    std::size_t mMissing BRN_GUARDED_BY(mMutex);
};

ThreadedWorkQueue::ThreadedWorkQueue(std::string const& inName, int inThreadCount,
                                     ThreadPriority inPriority) {
    auto const queue = boost::make_shared<ThreadSafeDelayQueue>();
    mState->gate = boost::make_shared<Gate>(false);
    {
        ExclusiveGuard const guard(mState->queueLock);
        mState->queue = queue;
    }
    try {
        StartWorkers(queue, inName, inThreadCount, inPriority);
    } catch (...) {
        Close();
        JoinWorkers();
        throw;
    }
    // No item runs before the pool is complete.
    mState->gate->Open();
}

ThreadedWorkQueue::~ThreadedWorkQueue() {
    if (IsInherited()) {
        static_cast<void>(mState.release());
        return;
    }
    // This may run on a worker of the pool, if an item held the last reference. That worker ends
    // like the others.
    Close();
}

bool ThreadedWorkQueue::Post(boost::function0<void> const& inFunction,
                             std::uint32_t inDelayMilliseconds) {
    if (IsInherited()) {
        return false;
    }
    // Copying and releasing a function runs a client's code, which may shut the pool down; so both
    // happen outside the lock.
    AllocatedFunction::Pointer item = AllocatedFunction::Make(inFunction);
    SharedGuard const lock(mState->queueLock, true);
    return lock.IsLocked() && mState->queue != nullptr &&
           mState->queue->Enqueue(item, inDelayMilliseconds);
}

bool ThreadedWorkQueue::IsCurrentThreadExecutorThread() {
    if (IsInherited()) {
        return false;
    }
    Thread const current("brindle/threads/ThreadedWorkQueue/IsCurrentThreadExecutorThread/"
                         "currentThread");
    for (auto const& thread : mState->threads) {
        if (*thread == current) {
            return true;
        }
    }
    return false;
}

std::int32_t ThreadedWorkQueue::GetThreadCount() {
    return static_cast<std::int32_t>(mState->threads.size());
}

void ThreadedWorkQueue::Shutdown() {
    if (!IsInherited() && !IsCurrentThreadExecutorThread()) {
        Close();
    }
}

bool ThreadedWorkQueue::IsShutdown() {
    if (IsInherited()) {
        return true;
    }
    SharedGuard const lock(mState->queueLock, true);
    return !lock.IsLocked() || mState->queue == nullptr;
}

void ThreadedWorkQueue::Synchronize() {
    if (IsInherited() || IsCurrentThreadExecutorThread()) {
        return;
    }
    utility::MutexLock const lock(mState->synchronizeMutex);
    if (mState->isJoined) {
        return;
    }
    if (boost::shared_ptr<Meeting> const meeting = CallMeeting()) {
        meeting->Attend();
        return;
    }
    JoinWorkers();
    mState->isJoined = true;
}

void ThreadedWorkQueue::Suspend() {
    if (IsInherited()) {
        return;
    }
    SharedGuard const lock(mState->queueLock, true);
    if (lock.IsLocked() && mState->queue != nullptr) {
        mState->gate->Close();
    }
}

void ThreadedWorkQueue::Resume() {
    if (IsInherited()) {
        return;
    }
    SharedGuard const lock(mState->queueLock, true);
    if (lock.IsLocked() && mState->queue != nullptr) {
        mState->gate->Open();
    }
}

void ThreadedWorkQueue::WaitUntilResumed() {
    // Blocks without the lock, which `Shutdown` needs before it opens the gate. After that nobody
    // closes the gate.
    if (!IsShutdown()) {
        mState->gate->Wait();
    }
}

void ThreadedWorkQueue::StartWorkers(boost::shared_ptr<ThreadSafeDelayQueue> const& inQueue,
                                     std::string const& inName, int inThreadCount,
                                     ThreadPriority inPriority) {
    mState->threads.reserve(static_cast<std::size_t>(std::max(inThreadCount, 0)));
    for (int i = 0; i < inThreadCount; ++i) {
        mState->threads.push_back(std::make_unique<Thread>(
            inName, [queue = inQueue, inName, inPriority, gate = mState->gate] {
                RunWorker(queue, inName, inPriority, gate);
            }));
    }
}

void ThreadedWorkQueue::JoinWorkers() {
    for (auto const& thread : mState->threads) {
        thread->Join();
    }
}

/// Has the workers end after the immediate items that are in the queue. Only the first call has an
/// effect.
void ThreadedWorkQueue::Close() noexcept {
    boost::shared_ptr<ThreadSafeDelayQueue> queue;
    {
        ExclusiveGuard const lock(mState->queueLock);
        queue.swap(mState->queue);
    }
    if (queue != nullptr) {
        queue->Clear();
        queue->Close();
        mState->gate->Open();
    }
}

/// Posts an item to each worker in which it attends the meeting. When all workers and the caller
/// have come, every item that was posted before has finished. Null if the pool is shut down.
boost::shared_ptr<ThreadedWorkQueue::Meeting> ThreadedWorkQueue::CallMeeting() {
    SharedGuard const lock(mState->queueLock, true);
    if (!lock.IsLocked() || mState->queue == nullptr) {
        return {};
    }
    auto const meeting = boost::make_shared<Meeting>(mState->threads.size() + 1);
    try {
        for (std::size_t i = 0; i < mState->threads.size(); ++i) {
            AllocatedFunction::Pointer item =
                AllocatedFunction::Make([meeting] { meeting->Attend(); });
            if (!mState->queue->Enqueue(item, 0)) {
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
