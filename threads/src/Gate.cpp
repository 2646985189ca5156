#include "threads/src/Gate.h"

#include <boost/thread/thread.hpp>

namespace brindle::threads {

Gate::~Gate() {
    Open();
    boost::this_thread::disable_interruption const uninterrupted;
    boost::mutex::scoped_lock lock(mMutex);
    while (mWaiters > 0) {
        mChanged.wait(lock);
    }
}

void Gate::Open() {
    std::int32_t closed = 0;
    if (!mIsOpen.compare_exchange_strong(closed, 1)) {
        return;
    }
    boost::mutex::scoped_lock const lock(mMutex);
    if (mWaiters > 0) {
        ++mGeneration;
        mChanged.notify_all();
    }
}

void Gate::Wait() {
    if (mIsOpen.load(std::memory_order_acquire) != 0) {
        return;
    }
    boost::this_thread::disable_interruption const uninterrupted;
    boost::mutex::scoped_lock lock(mMutex);
    // `Open` takes the mutex after it has changed the state: it finds this waiter, or is seen here.
    if (mIsOpen.load(std::memory_order_acquire) != 0) {
        return;
    }
    ++mWaiters;
    std::uint32_t const generation = mGeneration;
    while (mGeneration == generation) {
        mChanged.wait(lock);
    }
    if (--mWaiters == 0) {
        mChanged.notify_all();
    }
}

} // namespace brindle::threads
