#pragma once

#include "utility/src/base/ThreadAnnotations.h"

#include <boost/noncopyable.hpp>

#include <condition_variable>
#include <mutex>

namespace brindle::utility {

/// The standard library's mutex, known to Clang's analysis of locks. Locked through `MutexLock`.
class BRN_CAPABILITY("mutex") Mutex : boost::noncopyable {
public:
    constexpr Mutex() noexcept = default;

    // For those who lock and unlock in different functions; everybody else uses a `MutexLock`.
    void Lock() BRN_ACQUIRE() { mMutex.lock(); }
    void Unlock() BRN_RELEASE() { mMutex.unlock(); }

private:
    friend class MutexLock;

    std::mutex mMutex;
};

/// Holds a mutex for as long as it lives, except between `Unlock` and `Lock`.
class BRN_SCOPED_CAPABILITY MutexLock : boost::noncopyable {
public:
    explicit MutexLock(Mutex& ioMutex) BRN_ACQUIRE(ioMutex) : mLock(ioMutex.mMutex) {}
    ~MutexLock() BRN_RELEASE() {}

    void Unlock() BRN_RELEASE() { mLock.unlock(); }
    void Lock() BRN_ACQUIRE() { mLock.lock(); }
    bool IsLocked() const noexcept { return mLock.owns_lock(); }

private:
    friend class Condition;

    std::unique_lock<std::mutex> mLock;
};

/// A condition variable for `Mutex`. It is no interruption point of Boost's, and waiting allocates
/// nothing.
class Condition : boost::noncopyable {
public:
    /// Unlocks while it blocks. May return without a notification, so the caller waits in a loop: a
    /// predicate would be a function of its own, of which the analysis does not know that it holds
    /// the lock.
    void Wait(MutexLock& ioLock) { mCondition.wait(ioLock.mLock); }
    void NotifyOne() noexcept { mCondition.notify_one(); }
    void NotifyAll() noexcept { mCondition.notify_all(); }

private:
    std::condition_variable mCondition;
};

} // namespace brindle::utility
