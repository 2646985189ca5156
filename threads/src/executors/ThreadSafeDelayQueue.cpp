#include "threads/src/executors/ThreadSafeDelayQueue.h"

#include <algorithm>
#include <chrono>
#include <tuple>
#include <utility>

namespace brindle::threads {

namespace {

using platform::Deadline;

Deadline::SystemTime Now() {
    return std::chrono::system_clock::now();
}

} // namespace

ThreadSafeDelayQueue::~ThreadSafeDelayQueue() {
    Clear();
    while (TakeLeftOver() != nullptr) {
    }
}

bool ThreadSafeDelayQueue::Enqueue(AllocatedFunction::Pointer& ioItem,
                                   std::uint32_t inDelayMilliseconds) {
    if (inDelayMilliseconds == 0) {
        if (!mPort.Post(ioItem.get())) {
            return false;
        }
        static_cast<void>(ioItem.release());
        return true;
    }
    utility::MutexLock const lock(mMutex);
    // Read under the mutex, so that items of equal delays are due in the order of their numbers.
    Deadline::SystemTime const now = Now();
    Deadline::SystemTime const due = now + std::chrono::milliseconds(inDelayMilliseconds);
    bool const isWakeUpNeeded =
        mDelayed.empty() || due < mDelayed.front().due || now >= mDelayed.front().due;
    mDelayed.emplace_back(); // without memory this throws, and the item is still the caller's
    mDelayed.back() = {due, mNextNumber++, std::move(ioItem)};
    std::push_heap(mDelayed.begin(), mDelayed.end(), IsLater);
    if (isWakeUpNeeded) {
        RequestScan();
    }
    return true;
}

AllocatedFunction::Pointer ThreadSafeDelayQueue::Dequeue() {
    for (bool isTiming = false;;) {
        if (mIsClosed.load(std::memory_order_acquire)) {
            AllocatedFunction::Pointer item = TakeLeftOver();
            if (item == nullptr) {
                // The null packet that this worker took may have been meant to wake another one.
                PostWakeUp();
            }
            return item;
        }
        Deadline next = Deadline::Never();
        AllocatedFunction::Pointer item;
        isTiming = ScanDelayed(isTiming, next, item);
        if (item == nullptr) {
            void* packet = nullptr;
            mPort.Wait(packet, next);
            item.reset(static_cast<AllocatedFunction*>(packet));
        }
        if (item != nullptr) {
            if (isTiming) {
                RequestScan();
            }
            return item;
        }
        // The worker was woken without an item, or an item is due: it scans again, and keeps the
        // timer role.
    }
}

void ThreadSafeDelayQueue::Clear() noexcept {
    // Released after the mutex, because the destructor of a client's function may call the queue.
    std::vector<DelayedEntry> dropped;
    utility::MutexLock const lock(mMutex);
    dropped.swap(mDelayed);
}

void ThreadSafeDelayQueue::Close() noexcept {
    mIsClosed.store(true, std::memory_order_release);
    PostWakeUp();
}

bool ThreadSafeDelayQueue::IsLater(DelayedEntry const& inLHS, DelayedEntry const& inRHS) {
    return std::tie(inRHS.due, inRHS.number) < std::tie(inLHS.due, inLHS.number);
}

AllocatedFunction::Pointer ThreadSafeDelayQueue::TakeLeftOver() {
    void* packet = nullptr;
    while (packet == nullptr && mPort.Take(packet)) {
    }
    return AllocatedFunction::Pointer(static_cast<AllocatedFunction*>(packet));
}

void ThreadSafeDelayQueue::PostWakeUp() noexcept {
    static_cast<void>(mPort.Post(nullptr)); // a null packet is never refused
}

/// Has a worker scan, unless one is about to.
void ThreadSafeDelayQueue::RequestScan() noexcept {
    Timer settled = Timer::kSettled;
    if (mTimer.compare_exchange_strong(settled, Timer::kMustScan)) {
        PostWakeUp();
    }
}

/// Moves the items that are due to the port, if a scan was requested or this worker has the timer
/// role. True if it has the role from now on; `outNext` is when the next item is due. An item that
/// the port has no memory for is returned in `outDue` for this worker to run.
bool ThreadSafeDelayQueue::ScanDelayed(bool inIsTiming, Deadline& outNext,
                                       AllocatedFunction::Pointer& outDue) {
    if (!inIsTiming) {
        Timer mustScan = Timer::kMustScan;
        // Usually there is nothing to do, and a load is cheaper than an exchange.
        if (mTimer.load(std::memory_order_relaxed) != mustScan ||
            !mTimer.compare_exchange_strong(mustScan, Timer::kScanning)) {
            return false;
        }
    }
    utility::MutexLock const lock(mMutex);
    Deadline::SystemTime const now = Now();
    while (outDue == nullptr && !mDelayed.empty() && now >= mDelayed.front().due) {
        std::pop_heap(mDelayed.begin(), mDelayed.end(), IsLater);
        AllocatedFunction::Pointer item = std::move(mDelayed.back().item);
        mDelayed.pop_back();
        if (mPort.Post(item.get())) {
            static_cast<void>(item.release());
        } else {
            outDue = std::move(item);
        }
    }
    mTimer.store(Timer::kSettled);
    if (mDelayed.empty()) {
        return false;
    }
    outNext = Deadline::At(mDelayed.front().due);
    return true;
}

} // namespace brindle::threads
