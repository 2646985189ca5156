#include "threads/src/executors/ThreadSafeDelayQueue.h"

#include <algorithm>
#include <utility>

namespace brindle::threads {

namespace {

using platform::CompletionPort;

constexpr std::int32_t kNanosecondsPerMillisecond = 1'000'000;
constexpr std::int32_t kNanosecondsPerSecond = 1'000'000'000;

boost::xtime Now() {
    boost::xtime now;
    boost::xtime_get(&now, boost::TIME_UTC_);
    return now;
}

boost::xtime After(boost::xtime inTime, std::uint32_t inMilliseconds) {
    inTime.sec += inMilliseconds / 1000;
    inTime.nsec += static_cast<std::int32_t>(inMilliseconds % 1000) * kNanosecondsPerMillisecond;
    if (inTime.nsec >= kNanosecondsPerSecond) {
        inTime.nsec -= kNanosecondsPerSecond;
        ++inTime.sec;
    }
    return inTime;
}

bool IsBefore(boost::xtime const& inLHS, boost::xtime const& inRHS) {
    return boost::xtime_cmp(inLHS, inRHS) < 0;
}

/// The time between in milliseconds, at most what the port can wait. Rounded up, so that the worker
/// does not wake up early and scan again and again during the last millisecond.
std::uint32_t WaitBetween(boost::xtime const& inNow, boost::xtime const& inDue) {
    constexpr std::uint32_t kLongest = CompletionPort::kForever - 1;
    if (inDue.sec - inNow.sec > kLongest / 1000) {
        return kLongest;
    }
    std::int64_t const nanoseconds =
        (inDue.sec - inNow.sec) * kNanosecondsPerSecond + (inDue.nsec - inNow.nsec);
    std::int64_t const milliseconds =
        (nanoseconds + kNanosecondsPerMillisecond - 1) / kNanosecondsPerMillisecond;
    return static_cast<std::uint32_t>(std::min<std::int64_t>(milliseconds, kLongest));
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
    boost::xtime const now = Now();
    boost::xtime const due = After(now, inDelayMilliseconds);
    utility::MutexLock const lock(mMutex);
    bool const isWakeUpNeeded = mDelayed.empty() || IsBefore(due, mDelayed.front().due) ||
                                !IsBefore(now, mDelayed.front().due);
    mDelayed.emplace_back(); // without memory this throws, and the item is still the caller's
    mDelayed.back() = {due, std::move(ioItem)};
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
        std::uint32_t wait = 0;
        AllocatedFunction::Pointer item;
        isTiming = ScanDelayed(isTiming, wait, item);
        if (item == nullptr) {
            void* packet = nullptr;
            mPort.Wait(packet, wait);
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
    return IsBefore(inRHS.due, inLHS.due);
}

AllocatedFunction::Pointer ThreadSafeDelayQueue::TakeLeftOver() {
    void* packet = nullptr;
    while (packet == nullptr && mPort.Wait(packet, 0)) {
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
/// role. True if it has the role from now on; `outWait` is how long it may sleep. An item that the
/// port has no memory for is returned in `outDue` for this worker to run.
bool ThreadSafeDelayQueue::ScanDelayed(bool inIsTiming, std::uint32_t& outWait,
                                       AllocatedFunction::Pointer& outDue) {
    outWait = CompletionPort::kForever;
    if (!inIsTiming) {
        Timer mustScan = Timer::kMustScan;
        // Usually there is nothing to do, and a load is cheaper than an exchange.
        if (mTimer.load(std::memory_order_relaxed) != mustScan ||
            !mTimer.compare_exchange_strong(mustScan, Timer::kScanning)) {
            return false;
        }
    }
    utility::MutexLock const lock(mMutex);
    boost::xtime const now = Now();
    while (outDue == nullptr && !mDelayed.empty() && !IsBefore(now, mDelayed.front().due)) {
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
    outWait = WaitBetween(now, mDelayed.front().due);
    return true;
}

} // namespace brindle::threads
