#pragma once

#include <boost/noncopyable.hpp>
#include <boost/thread/condition.hpp>
#include <boost/thread/mutex.hpp>

#include <atomic>
#include <cstdint>

namespace brindle::threads {

/// A lock that many share or one holds alone. Without a writer, to enter and to leave as a reader
/// is one atomic operation each. A writer that comes keeps new readers out; they follow when it has
/// gone.
///
/// What a holder did is visible to the next one that it excludes. Used through the guards below.
class ReadWriteLock : boost::noncopyable {
public:
    /// False if `inTryOnly` and a writer holds or claims the lock; otherwise waits for it.
    bool LockShared(bool inTryOnly);
    void UnlockShared();

    /// False if `inTryOnly` and anybody holds the lock; otherwise waits until nobody does.
    bool LockExclusive(bool inTryOnly);
    void UnlockExclusive();

private:
    void AwaitReaders();

    // Low half: readers inside. High half: writers that hold or claim the lock.
    std::atomic<std::uint32_t> mState{0};
    boost::condition mReadersLeft;
    boost::mutex mConditionMutex;
    boost::try_mutex mWriterMutex;
    int mWaitingWriters = 0;
};

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
    /// Throws `boost::lock_error` if the guard is locked, or is not.
    void Lock();
    void Unlock();

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
    /// Throws `boost::lock_error` if the guard is locked, or is not.
    void Lock();
    void Unlock();

private:
    ReadWriteLock& mLock;
    bool mIsLocked;
};

} // namespace brindle::threads
