#pragma once

#include <boost/noncopyable.hpp>
#include <boost/thread/condition.hpp>
#include <boost/thread/mutex.hpp>

#include <atomic>
#include <cstdint>

namespace brindle::threads {

/// A latch that opens and closes any number of times. Any thread may call any operation.
///
/// What a thread did before `Open` is visible to every thread that `Wait` lets through because of
/// it.
class Gate : boost::noncopyable {
public:
    explicit Gate(bool inOpen) : mIsOpen(inOpen ? 1 : 0) {}
    /// Opens the gate and lets all who sleep at it leave.
    ~Gate();

    void Open();
    /// Does not disturb who is past `Wait`.
    void Close() { mIsOpen.store(0, std::memory_order_relaxed); }
    /// Blocks as long as the gate is closed; one atomic read if it is open. Whoever sleeps here
    /// when the gate opens passes, even if it closes again at once.
    void Wait();

private:
    std::atomic<std::int32_t> mIsOpen;
    boost::mutex mMutex;
    boost::condition mChanged;
    std::uint32_t mGeneration = 0;
    int mWaiters = 0;
};

} // namespace brindle::threads
