#pragma once

#include "threads/src/locks/Undelayed.h"

#include <boost/noncopyable.hpp>
#include <boost/thread/exceptions.hpp>

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace brindle::threads {

/// A lock that many share, up to 65535, or one holds alone. Without a writer, to enter and to leave
/// as a reader is one atomic operation each. A writer that comes keeps new readers out; they follow
/// when it has gone.
///
/// What a holder did is visible to the next one that it excludes. Used through the guards below.
/// Not recursive: who holds it and waits for it again may wait forever. It may be destroyed when no
/// operation is under way.
template <typename Delays>
class BasicReadWriteLock : boost::noncopyable {
public:
    /// False if `inTryOnly` and a writer holds or claims the lock; otherwise waits for it.
    bool LockShared(bool inTryOnly) {
        std::uint32_t state = mState.load(std::memory_order_relaxed);
        while (state < kOneWriter) {
            Delays::Step();
            if (mState.compare_exchange_weak(state, state + 1, std::memory_order_acquire,
                                             std::memory_order_relaxed)) {
                return true;
            }
        }
        return !inTryOnly && FollowWriter();
    }

    void UnlockShared() {
        std::uint32_t state = mState.load(std::memory_order_relaxed);
        while (state < kOneWriter || (state & kReaders) >= 2) {
            Delays::Step();
            if (mState.compare_exchange_weak(state, state - 1, std::memory_order_release,
                                             std::memory_order_relaxed)) {
                return;
            }
        }
        LeaveToWriter();
    }

    /// False if `inTryOnly` and anybody holds the lock; otherwise waits until nobody does.
    bool LockExclusive(bool inTryOnly);
    void UnlockExclusive();

private:
    static constexpr std::uint32_t kOneWriter = 0x10000;
    static constexpr std::uint32_t kReaders = 0xFFFF;

    bool HasReaders() const { return (mState.load(std::memory_order_acquire) & kReaders) != 0; }
    bool FollowWriter();
    void LeaveToWriter();
    void AwaitReaders();

    // Low half: readers inside. High half: writers that hold or claim the lock.
    std::atomic<std::uint32_t> mState{0};
    std::condition_variable mReadersLeft;
    std::mutex mConditionMutex; // taken after the writer mutex
    std::mutex mWriterMutex;
    int mWaitingWriters = 0;
};

template <typename Delays>
bool BasicReadWriteLock<Delays>::FollowWriter() {
    Delays::BeforeSleep();
    std::lock_guard<std::mutex> const lock(mWriterMutex);
    Delays::Step();
    mState.fetch_add(1, std::memory_order_relaxed); // the mutex orders this after the last writer
    return true;
}

template <typename Delays>
void BasicReadWriteLock<Delays>::LeaveToWriter() {
    // The writer looks at the state under the mutex: it either sees this, or is asleep when it is
    // woken.
    mState.fetch_sub(1, std::memory_order_release);
    Delays::Step();
    std::lock_guard<std::mutex> const lock(mConditionMutex);
    if (mWaitingWriters > 0) {
        mReadersLeft.notify_one();
    }
}

template <typename Delays>
bool BasicReadWriteLock<Delays>::LockExclusive(bool inTryOnly) {
    mState.fetch_add(kOneWriter, std::memory_order_relaxed);
    Delays::Step();
    if (!inTryOnly) {
        mWriterMutex.lock();
    } else if (!mWriterMutex.try_lock()) {
        mState.fetch_sub(kOneWriter, std::memory_order_relaxed);
        return false;
    }
    Delays::Step();
    if (!HasReaders()) {
        return true;
    }
    if (inTryOnly) {
        mWriterMutex.unlock();
        Delays::Step();
        mState.fetch_sub(kOneWriter, std::memory_order_relaxed);
        return false;
    }
    AwaitReaders();
    return true;
}

template <typename Delays>
void BasicReadWriteLock<Delays>::AwaitReaders() {
    std::unique_lock<std::mutex> lock(mConditionMutex);
    ++mWaitingWriters;
    Delays::BeforeSleep();
    mReadersLeft.wait(lock, [this] { return !HasReaders(); });
    --mWaitingWriters;
}

template <typename Delays>
void BasicReadWriteLock<Delays>::UnlockExclusive() {
    mWriterMutex.unlock();
    Delays::Step();
    mState.fetch_sub(kOneWriter, std::memory_order_release);
}

using ReadWriteLock = BasicReadWriteLock<Undelayed>;

/// Shares the lock as long as it lives, if it could get it.
class SharedGuard : boost::noncopyable {
public:
    explicit SharedGuard(ReadWriteLock& ioLock, bool inTryOnly = false)
        : mLock(ioLock), mIsLocked(ioLock.LockShared(inTryOnly)) {}
    ~SharedGuard() {
        if (mIsLocked) {
            mLock.UnlockShared();
        }
    }

    bool IsLocked() const noexcept { return mIsLocked; }
    /// Throws `boost::lock_error` if the guard is locked.
    void Lock() {
        if (mIsLocked) {
            throw boost::lock_error();
        }
        mIsLocked = mLock.LockShared(false);
    }
    /// Throws `boost::lock_error` if the guard is not locked.
    void Unlock() {
        if (!mIsLocked) {
            throw boost::lock_error();
        }
        mIsLocked = false;
        mLock.UnlockShared();
    }

private:
    ReadWriteLock& mLock;
    bool mIsLocked;
};

/// Holds the lock alone as long as it lives, if it could get it.
class ExclusiveGuard : boost::noncopyable {
public:
    explicit ExclusiveGuard(ReadWriteLock& ioLock, bool inTryOnly = false)
        : mLock(ioLock), mIsLocked(ioLock.LockExclusive(inTryOnly)) {}
    ~ExclusiveGuard() {
        if (mIsLocked) {
            mLock.UnlockExclusive();
        }
    }

    bool IsLocked() const noexcept { return mIsLocked; }
    /// Throws `boost::lock_error` if the guard is locked.
    void Lock() {
        if (mIsLocked) {
            throw boost::lock_error();
        }
        mIsLocked = mLock.LockExclusive(false);
    }
    /// Throws `boost::lock_error` if the guard is not locked.
    void Unlock() {
        if (!mIsLocked) {
            throw boost::lock_error();
        }
        mIsLocked = false;
        mLock.UnlockExclusive();
    }

private:
    ReadWriteLock& mLock;
    bool mIsLocked;
};

} // namespace brindle::threads
