#pragma once

#include "utility/src/base/Mutex.h"
#include "utility/src/base/NoPause.h"

#include <boost/noncopyable.hpp>
#include <boost/thread/exceptions.hpp>

#include <atomic>
#include <cstdint>
#include <mutex>

namespace brindle::threads {

/// A lock that up to 65535 readers share, or one writer holds alone. Without a writer, a reader
/// enters and leaves with one atomic operation each. A writer that waits keeps new readers out;
/// they enter after it has left.
///
/// What a holder did is visible to the next holder that it excludes. Not recursive: a thread that
/// holds the lock and waits for it again may wait forever. It may be destroyed when no operation is
/// in progress.
///
/// Used through the guards below, which tell Clang's analysis what is held. The proof is in
/// docs/concurrency/read-write-lock.md; `Steps` is called between the atomic steps.
template <typename Steps>
class BRN_CAPABILITY("lock") BasicReadWriteLock : boost::noncopyable {
public:
    /// With `inTryOnly`, false if a writer holds or claims the lock; otherwise waits, and is true.
    bool LockShared(bool inTryOnly) {
        std::uint32_t state = mState.load(std::memory_order_relaxed);
        while (state < kOneWriter) {
            Steps::Pause();
            if (mState.compare_exchange_weak(state, state + 1, std::memory_order_acquire,
                                             std::memory_order_relaxed)) {
                return true;
            }
        }
        return !inTryOnly && EnterAfterWriter();
    }

    void UnlockShared() {
        std::uint32_t state = mState.load(std::memory_order_relaxed);
        while (state < kOneWriter || (state & kReaders) >= 2) {
            Steps::Pause();
            if (mState.compare_exchange_weak(state, state - 1, std::memory_order_release,
                                             std::memory_order_relaxed)) {
                return;
            }
        }
        LeaveAndWakeWriter();
    }

    /// With `inTryOnly`, false if any thread holds the lock; otherwise waits until none does, and
    /// is true.
    bool LockExclusive(bool inTryOnly);
    void UnlockExclusive();

private:
    static constexpr std::uint32_t kOneWriter = 0x10000;
    static constexpr std::uint32_t kReaders = 0xFFFF;

    bool HasReaders() const { return (mState.load(std::memory_order_acquire) & kReaders) != 0; }
    bool EnterAfterWriter();
    void LeaveAndWakeWriter();
    void AwaitReaders();

    // Low half: readers inside. High half: writers that hold or claim the lock.
    std::atomic<std::uint32_t> mState{0};
    // Held by the writer from `LockExclusive` to `UnlockExclusive`; taken before the condition
    // mutex.
    std::mutex mWriterMutex;
    utility::Mutex mConditionMutex;
    utility::Condition mReadersLeft;
    int mWaitingWriters BRN_GUARDED_BY(mConditionMutex) = 0;
};

template <typename Steps>
bool BasicReadWriteLock<Steps>::EnterAfterWriter() {
    Steps::BeforeSleep();
    std::lock_guard<std::mutex> const lock(mWriterMutex);
    Steps::Pause();
    mState.fetch_add(1, std::memory_order_relaxed); // the mutex orders it after the last writer
    return true;
}

template <typename Steps>
void BasicReadWriteLock<Steps>::LeaveAndWakeWriter() {
    // The writer reads the state under the mutex: either it sees this change, or it sleeps by the
    // time this thread has the mutex.
    mState.fetch_sub(1, std::memory_order_release);
    Steps::Pause();
    utility::MutexLock const lock(mConditionMutex);
    if (mWaitingWriters > 0) {
        mReadersLeft.NotifyOne();
    }
}

template <typename Steps>
bool BasicReadWriteLock<Steps>::LockExclusive(bool inTryOnly) {
    mState.fetch_add(kOneWriter, std::memory_order_relaxed);
    Steps::Pause();
    if (!inTryOnly) {
        mWriterMutex.lock();
    } else if (!mWriterMutex.try_lock()) {
        mState.fetch_sub(kOneWriter, std::memory_order_relaxed);
        return false;
    }
    Steps::Pause();
    if (!HasReaders()) {
        return true;
    }
    if (inTryOnly) {
        mWriterMutex.unlock();
        Steps::Pause();
        mState.fetch_sub(kOneWriter, std::memory_order_relaxed);
        return false;
    }
    AwaitReaders();
    return true;
}

template <typename Steps>
void BasicReadWriteLock<Steps>::AwaitReaders() {
    utility::MutexLock lock(mConditionMutex);
    ++mWaitingWriters;
    Steps::BeforeSleep();
    while (HasReaders()) {
        mReadersLeft.Wait(lock);
    }
    --mWaitingWriters;
}

template <typename Steps>
void BasicReadWriteLock<Steps>::UnlockExclusive() {
    mWriterMutex.unlock();
    Steps::Pause();
    mState.fetch_sub(kOneWriter, std::memory_order_release);
}

using ReadWriteLock = BasicReadWriteLock<utility::NoPause>;

/// Shares the lock for as long as it lives, except between `Unlock` and `Lock`. With `inTryOnly` it
/// may not get the lock, and its owner asks `IsLocked` before it accesses what the lock guards; the
/// analysis cannot check that.
class BRN_SCOPED_CAPABILITY SharedGuard : boost::noncopyable {
public:
    explicit SharedGuard(ReadWriteLock& ioLock, bool inTryOnly = false) BRN_ACQUIRE_SHARED(ioLock)
        : mLock(ioLock), mIsLocked(ioLock.LockShared(inTryOnly)) {}
    ~SharedGuard() BRN_RELEASE() {
        if (mIsLocked) {
            mLock.UnlockShared();
        }
    }

    bool IsLocked() const noexcept { return mIsLocked; }
    /// Throws `boost::lock_error` if the guard is locked.
    void Lock() BRN_ACQUIRE_SHARED() {
        if (mIsLocked) {
            throw boost::lock_error();
        }
        mIsLocked = mLock.LockShared(false);
    }
    /// Throws `boost::lock_error` if the guard is not locked.
    void Unlock() BRN_RELEASE() {
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

/// Holds the lock alone for as long as it lives; the rest is as for `SharedGuard`.
class BRN_SCOPED_CAPABILITY ExclusiveGuard : boost::noncopyable {
public:
    explicit ExclusiveGuard(ReadWriteLock& ioLock, bool inTryOnly = false) BRN_ACQUIRE(ioLock)
        : mLock(ioLock), mIsLocked(ioLock.LockExclusive(inTryOnly)) {}
    ~ExclusiveGuard() BRN_RELEASE() {
        if (mIsLocked) {
            mLock.UnlockExclusive();
        }
    }

    bool IsLocked() const noexcept { return mIsLocked; }
    /// Throws `boost::lock_error` if the guard is locked.
    void Lock() BRN_ACQUIRE() {
        if (mIsLocked) {
            throw boost::lock_error();
        }
        mIsLocked = mLock.LockExclusive(false);
    }
    /// Throws `boost::lock_error` if the guard is not locked.
    void Unlock() BRN_RELEASE() {
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
