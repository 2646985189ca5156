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
    return inLHS.sec != inRHS.sec ? inLHS.sec < inRHS.sec : inLHS.nsec < inRHS.nsec;
}

/// How long to wait from one time to a later one, no longer than the port can. Rounded up: rounded
/// down, the last millisecond would be spent looking again and again.
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
    boost::mutex::scoped_lock const lock(mMutex);
    bool const isWakeUpNeeded = mDelayed.empty() || IsBefore(due, mDelayed.front().due) ||
                                !IsBefore(now, mDelayed.front().due);
    mDelayed.emplace_back(); // if there is no memory the item is still the caller's
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
                // This one may have taken the word that was meant for another.
                mPort.Post(nullptr);
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
        // Woken up, or out of time: looks again, and keeps the role if it has it.
        if (item != nullptr) {
            if (isTiming) {
                RequestScan();
            }
            return item;
        }
    }
}

void ThreadSafeDelayQueue::Clear() noexcept {
    // What an item holds may call the queue as it goes, so nothing goes under the mutex.
    std::vector<DelayedEntry> dropped;
    boost::mutex::scoped_lock const lock(mMutex);
    dropped.swap(mDelayed);
}

void ThreadSafeDelayQueue::Close() noexcept {
    mIsClosed.store(true, std::memory_order_release);
    mPort.Post(nullptr);
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

/// Has a worker scan, unless that is on its way already.
void ThreadSafeDelayQueue::RequestScan() noexcept {
    Timer settled = Timer::kSettled;
    if (mTimer.compare_exchange_strong(settled, Timer::kMustScan)) {
        mPort.Post(nullptr);
    }
}

/// Moves what is due to the port, if it is this worker's turn or it has the role. True if it has
/// the role from here, with the time that it may sleep. An item that the port has no memory for is
/// handed to this worker at once.
bool ThreadSafeDelayQueue::ScanDelayed(bool inIsTiming, std::uint32_t& outWait,
                                       AllocatedFunction::Pointer& outDue) {
    outWait = CompletionPort::kForever;
    if (!inIsTiming) {
        Timer mustScan = Timer::kMustScan;
        // Most often there is nothing to do, and to look is cheaper than to try.
        if (mTimer.load(std::memory_order_relaxed) != mustScan ||
            !mTimer.compare_exchange_strong(mustScan, Timer::kScanning)) {
            return false;
        }
    }
    boost::mutex::scoped_lock const lock(mMutex);
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
