#pragma once

#include "platform/CompletionPort.h"
#include "threads/src/executors/AllocatedFunction.h"

#include <boost/noncopyable.hpp>
#include <boost/thread/mutex.hpp>
#include <boost/thread/xtime.hpp>

#include <atomic>
#include <cstdint>
#include <vector>

namespace brindle::threads {

/// The work items of a pool: immediate ones in the order of coming, and delayed ones, which join
/// those when they are due by the system's clock. Any thread may call any operation.
///
/// There is no timer thread. Some worker that has nothing to do sleeps no longer than until the
/// next item is due, and hands this role on when it leaves with an item.
/// docs/concurrency/delay-queue.md tells why no item is forgotten.
class ThreadSafeDelayQueue : boost::noncopyable {
public:
    ThreadSafeDelayQueue() = default; ///< throws `std::bad_alloc`
    /// Releases the items that are left.
    ~ThreadSafeDelayQueue();

    /// True, and the pointer is emptied, if the item is accepted; false if there is no memory for
    /// an immediate one. Throws `std::bad_alloc` for a delayed one.
    bool Enqueue(AllocatedFunction::Pointer& ioItem, std::uint32_t inDelayMilliseconds);

    /// Takes the oldest item that is due; blocks until there is one. Null once the queue is closed
    /// and nothing is left.
    AllocatedFunction::Pointer Dequeue();

    /// Releases the delayed items that no worker has found due.
    void Clear() noexcept;

    /// From here `Dequeue` does not block. Nothing may be enqueued any more.
    void Close() noexcept;

private:
    struct DelayedEntry {
        boost::xtime due;
        AllocatedFunction::Pointer item;
    };

    /// What has become of the time at which somebody looks at the delayed items next.
    enum class Timer : std::int32_t {
        kMustScan, ///< somebody who comes to the port must find it out
        kSettled, ///< it is known: somebody sleeps no longer than until then, or nothing is delayed
        kScanning ///< somebody is about to find it out
    };

    static bool IsLater(DelayedEntry const& inLHS, DelayedEntry const& inRHS);

    AllocatedFunction::Pointer TakeLeftOver();
    void RequestScan() noexcept;
    bool ScanDelayed(bool inIsTiming, std::uint32_t& outWait, AllocatedFunction::Pointer& outDue);

    platform::CompletionPort mPort;
    std::atomic<Timer> mTimer{Timer::kSettled};
    std::atomic<bool> mIsClosed{false};
    boost::mutex mMutex;
    std::vector<DelayedEntry> mDelayed; // a heap, the earliest on top
};

} // namespace brindle::threads
