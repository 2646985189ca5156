#pragma once

#include "utility/src/base/Mutex.h"

#include <boost/noncopyable.hpp>

#include <thread>

namespace brindle::threads {

/// A mutex that a thread can reserve for itself without holding it: while it is frozen, only the
/// thread that froze it can lock it. A thread that is about to fork the process freezes any number
/// of these, and can still use what they guard. Locked through `FreezableMutexLock`.
class BRN_CAPABILITY("mutex") FreezableMutex : boost::noncopyable {
public:
    /// Waits until no thread holds the mutex, and reserves it for the calling thread.
    void Freeze() BRN_ACQUIRE();
    /// Lets every thread lock it again, in the parent process.
    void Thaw() BRN_RELEASE();
    /// The same in the child process of a fork.
    void ThawInChild() BRN_RELEASE();

private:
    friend class FreezableMutexLock;

    void AwaitThaw(utility::MutexLock& ioLock) BRN_REQUIRES(mMutex);

    utility::Mutex mMutex;
    utility::Condition mThawed;
    // No thread's id if the mutex is not frozen. A thread's id is the same in the child.
    std::thread::id mFrozenBy BRN_GUARDED_BY(mMutex);
};

/// Holds the mutex for as long as it lives.
class BRN_SCOPED_CAPABILITY FreezableMutexLock : boost::noncopyable {
public:
    // Not analysed: the analysis follows locks that are variables, and this one is a member.
    explicit FreezableMutexLock(FreezableMutex& ioMutex)
        BRN_ACQUIRE(ioMutex) BRN_NO_THREAD_SAFETY_ANALYSIS : mLock(ioMutex.mMutex) {
        if (ioMutex.mFrozenBy != std::thread::id()) {
            ioMutex.AwaitThaw(mLock);
        }
    }
    ~FreezableMutexLock() BRN_RELEASE() {}

private:
    utility::MutexLock mLock;
};

} // namespace brindle::threads
