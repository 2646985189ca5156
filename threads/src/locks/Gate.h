#pragma once

#include "utility/src/base/Mutex.h"
#include "utility/src/base/NoPause.h"

#include <boost/noncopyable.hpp>

#include <atomic>
#include <cstdint>

namespace brindle::threads {

/// A latch that opens and closes any number of times. Any thread may call any operation.
///
/// What a thread did before `Open` is visible to every thread that `Wait` lets through because of
/// it. The proof is in docs/concurrency/gate.md; `Steps` is called between the atomic steps.
template <typename Steps>
class BasicGate : boost::noncopyable {
public:
    explicit BasicGate(bool inOpen) : mIsOpen(inOpen ? 1 : 0) {}
    /// Opens the gate, and blocks until the threads that sleep at it have left. No `Open` may be in
    /// progress: a thread that was let through may destroy the gate only after the `Open` that let
    /// it through has returned.
    ~BasicGate();

    void Open();
    /// Does not affect threads that are past `Wait`.
    void Close() { mIsOpen.store(0, std::memory_order_relaxed); }
    /// Blocks as long as the gate is closed; costs one atomic read if it is open. A thread that
    /// sleeps here when the gate opens is let through, even if the gate closes again at once.
    void Wait() {
        if (mIsOpen.load(std::memory_order_acquire) == 0) {
            Sleep();
        }
    }

private:
    void Sleep();

    std::atomic<std::int32_t> mIsOpen;
    utility::Mutex mMutex;
    utility::Condition mChanged;
    // How many times sleepers have been released.
    std::uint32_t mGeneration BRN_GUARDED_BY(mMutex) = 0;
    int mWaiters BRN_GUARDED_BY(mMutex) = 0;
};

template <typename Steps>
BasicGate<Steps>::~BasicGate() {
    Open();
    utility::MutexLock lock(mMutex);
    while (mWaiters > 0) {
        Steps::BeforeSleep();
        mChanged.Wait(lock);
    }
}

template <typename Steps>
void BasicGate<Steps>::Open() {
    std::int32_t closed = 0;
    if (!mIsOpen.compare_exchange_strong(closed, 1, std::memory_order_release,
                                         std::memory_order_relaxed)) {
        return;
    }
    Steps::Pause();
    utility::MutexLock const lock(mMutex);
    if (mWaiters > 0) {
        ++mGeneration;
        mChanged.NotifyAll();
    }
}

template <typename Steps>
void BasicGate<Steps>::Sleep() {
    Steps::Pause();
    utility::MutexLock lock(mMutex);
    // `Open` takes the mutex after it has changed the state: either it finds this waiter, or the
    // change is seen here.
    if (mIsOpen.load(std::memory_order_acquire) != 0) {
        return;
    }
    ++mWaiters;
    std::uint32_t const generation = mGeneration;
    Steps::BeforeSleep();
    while (mGeneration == generation) {
        mChanged.Wait(lock);
    }
    if (--mWaiters == 0) {
        mChanged.NotifyAll(); // the destructor may be waiting for this
    }
}

using Gate = BasicGate<utility::NoPause>;

} // namespace brindle::threads
