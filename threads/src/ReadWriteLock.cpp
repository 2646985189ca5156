#include "threads/src/ReadWriteLock.h"

#include <boost/thread/exceptions.hpp>
#include <boost/thread/thread.hpp>

namespace brindle::threads {

namespace {

constexpr std::uint32_t kOneWriter = 0x10000;
constexpr std::uint32_t kReaders = 0xFFFF;

} // namespace

bool ReadWriteLock::LockShared(bool inTryOnly) {
    std::uint32_t state = mState.load(std::memory_order_relaxed);
    while (state < kOneWriter) {
        if (mState.compare_exchange_weak(state, state + 1, std::memory_order_acquire,
                                         std::memory_order_relaxed)) {
            return true;
        }
    }
    if (inTryOnly) {
        return false;
    }
    // Waits out the writer inside.
    boost::try_mutex::scoped_lock const lock(mWriterMutex);
    mState.fetch_add(1, std::memory_order_acquire);
    return true;
}

void ReadWriteLock::UnlockShared() {
    std::uint32_t state = mState.load(std::memory_order_relaxed);
    while (state <= kReaders || (state & kReaders) >= 2) {
        if (mState.compare_exchange_weak(state, state - 1, std::memory_order_release,
                                         std::memory_order_relaxed)) {
            return;
        }
    }
    // The last reader that a writer may wait for. The writer looks at the state under the mutex, so
    // it either sees this or is asleep when it is woken.
    mState.fetch_sub(1, std::memory_order_release);
    boost::mutex::scoped_lock const lock(mConditionMutex);
    if (mWaitingWriters > 0) {
        mReadersLeft.notify_one();
    }
}

bool ReadWriteLock::LockExclusive(bool inTryOnly) {
    mState.fetch_add(kOneWriter, std::memory_order_relaxed);
    if (!inTryOnly) {
        mWriterMutex.lock();
    } else if (!mWriterMutex.try_lock()) {
        mState.fetch_sub(kOneWriter, std::memory_order_relaxed);
        return false;
    }
    if ((mState.load(std::memory_order_acquire) & kReaders) == 0) {
        return true;
    }
    if (inTryOnly) {
        mWriterMutex.unlock();
        mState.fetch_sub(kOneWriter, std::memory_order_relaxed);
        return false;
    }
    AwaitReaders();
    return true;
}

void ReadWriteLock::AwaitReaders() {
    // A client's interruption of this thread is for its own waits.
    boost::this_thread::disable_interruption const uninterrupted;
    boost::mutex::scoped_lock lock(mConditionMutex);
    ++mWaitingWriters;
    while ((mState.load(std::memory_order_acquire) & kReaders) != 0) {
        mReadersLeft.wait(lock);
    }
    --mWaitingWriters;
}

void ReadWriteLock::UnlockExclusive() {
    mWriterMutex.unlock();
    mState.fetch_sub(kOneWriter, std::memory_order_release);
}

void SharedGuard::Lock() {
    if (mIsLocked) {
        throw boost::lock_error();
    }
    mIsLocked = mLock.LockShared(false);
}

void SharedGuard::Unlock() {
    if (!mIsLocked) {
        throw boost::lock_error();
    }
    mIsLocked = false;
    mLock.UnlockShared();
}

void ExclusiveGuard::Lock() {
    if (mIsLocked) {
        throw boost::lock_error();
    }
    mIsLocked = mLock.LockExclusive(false);
}

void ExclusiveGuard::Unlock() {
    if (!mIsLocked) {
        throw boost::lock_error();
    }
    mIsLocked = false;
    mLock.UnlockExclusive();
}

} // namespace brindle::threads
