#pragma once

#include "threads/src/locks/Undelayed.h"

#include <boost/noncopyable.hpp>

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace brindle::threads {

/// A latch that opens and closes any number of times. Any thread may call any operation.
///
/// What a thread did before `Open` is visible to every thread that `Wait` lets through because of
/// it.
template <typename Delays>
class BasicGate : boost::noncopyable {
public:
    explicit BasicGate(bool inOpen) : mIsOpen(inOpen ? 1 : 0) {}
    /// Opens the gate and waits until all who sleep at it have left. No `Open` may be under way:
    /// whoever is let through must not destroy the gate before the `Open` that did it has returned.
    ~BasicGate();

    void Open();
    /// Does not disturb who is past `Wait`.
    void Close() { mIsOpen.store(0, std::memory_order_relaxed); }
    /// Blocks as long as the gate is closed; one atomic read if it is open. Whoever sleeps here
    /// when the gate opens passes, even if it closes again at once.
    void Wait() {
        if (mIsOpen.load(std::memory_order_acquire) == 0) {
            Sleep();
        }
    }

private:
    void Sleep();

    std::atomic<std::int32_t> mIsOpen;
    std::mutex mMutex;
    std::condition_variable mChanged;
    std::uint32_t mGeneration = 0; // counts the times that sleepers were let go
    int mWaiters = 0;
};

template <typename Delays>
BasicGate<Delays>::~BasicGate() {
    Open();
    std::unique_lock<std::mutex> lock(mMutex);
    while (mWaiters > 0) {
        Delays::BeforeSleep();
        mChanged.wait(lock);
    }
}

template <typename Delays>
void BasicGate<Delays>::Open() {
    std::int32_t closed = 0;
    if (!mIsOpen.compare_exchange_strong(closed, 1, std::memory_order_release,
                                         std::memory_order_relaxed)) {
        return;
    }
    Delays::Step();
    std::lock_guard<std::mutex> const lock(mMutex);
    if (mWaiters > 0) {
        ++mGeneration;
        mChanged.notify_all();
    }
}

template <typename Delays>
void BasicGate<Delays>::Sleep() {
    Delays::Step();
    std::unique_lock<std::mutex> lock(mMutex);
    // `Open` takes the mutex after it has changed the state: it finds this waiter, or is seen here.
    if (mIsOpen.load(std::memory_order_acquire) != 0) {
        return;
    }
    ++mWaiters;
    std::uint32_t const generation = mGeneration;
    Delays::BeforeSleep();
    mChanged.wait(lock, [&] { return mGeneration != generation; });
    if (--mWaiters == 0) {
        mChanged.notify_all(); // the destructor may sleep, too
    }
}

using Gate = BasicGate<Undelayed>;

} // namespace brindle::threads
