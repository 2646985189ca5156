#pragma once

#include "platform/CompletionPort.h"
#include "threads/src/executors/AllocatedFunction.h"
#include "utility/src/base/Mutex.h"

#include <boost/noncopyable.hpp>

#include <atomic>
#include <cstdint>
#include <vector>

namespace brindle::threads {

/// The work items of a pool: immediate items, first in first out, and delayed items, which join
/// them when they are due by the system's clock. Any thread may call any operation.
///
/// There is no timer thread. One idle worker has the timer role: it sleeps no longer than until the
/// next item is due, and passes the role on when it leaves with an item.
/// docs/concurrency/delay-queue.md proves that no item is forgotten.
class ThreadSafeDelayQueue : boost::noncopyable {
public:
    ThreadSafeDelayQueue() = default; ///< throws `std::bad_alloc`
    /// Releases the items that are left.
    ~ThreadSafeDelayQueue();

    /// Takes the item and returns true. Without memory it returns false for an immediate item, and
    /// throws `std::bad_alloc` for a delayed one; the item then stays with the caller.
    [[nodiscard]] bool Enqueue(AllocatedFunction::Pointer& ioItem,
                               std::uint32_t inDelayMilliseconds);

    /// Removes the oldest item that is due; blocks until there is one. Null once the queue is
    /// closed and no item is left.
    [[nodiscard]] AllocatedFunction::Pointer Dequeue();

    /// Releases the delayed items that no worker has found to be due.
    void Clear() noexcept;

    /// From now on `Dequeue` does not block. Nothing may be enqueued after this.
    void Close() noexcept;

private:
    struct DelayedEntry {
        platform::Deadline::SystemTime due;
        std::uint64_t number =
            0; // in the order of posting, for items that are due at the same time
        AllocatedFunction::Pointer item;
    };

    /// Whether a worker knows when the first delayed item is due.
    enum class Timer : std::int32_t {
        kMustScan, ///< the next worker that comes to the port must scan the delayed items
        kSettled,  ///< a worker sleeps no longer than until then, or nothing is delayed
        kScanning  ///< a worker is about to scan
    };

    static bool IsLater(DelayedEntry const& inLHS, DelayedEntry const& inRHS);

    AllocatedFunction::Pointer TakeLeftOver();
    void PostWakeUp() noexcept;
    void RequestScan() noexcept;
    bool ScanDelayed(bool inIsTiming, platform::Deadline& outNext,
                     AllocatedFunction::Pointer& outDue);

    platform::CompletionPort mPort;
    std::atomic<Timer> mTimer{Timer::kSettled};
    std::atomic<bool> mIsClosed{false};
    utility::Mutex mMutex;
    std::vector<DelayedEntry> mDelayed BRN_GUARDED_BY(mMutex); // a heap with the earliest on top
    std::uint64_t mNextNumber BRN_GUARDED_BY(mMutex) = 0;
};

} // namespace brindle::threads
