#pragma once

#include <boost/noncopyable.hpp>

#include <condition_variable>
#include <mutex>
#include <thread>

namespace brindle::threads {

/// A mutex that a thread that is about to fork the process keeps for itself, without holding it: a
/// thread may freeze any number of them, and lock what it froze. Used through the lock below.
class FreezableMutex : boost::noncopyable {
public:
    /// Waits until nobody has the mutex. From now on only the calling thread gets it.
    void Freeze();
    /// Lets every thread in again; in the process, and in its copy, where other threads are gone
    /// that may have been about to wait.
    void Thaw();
    void ThawInChild();

private:
    friend class FreezableMutexLock;

    std::mutex mMutex;
    std::condition_variable mThawed;
    // Nobody's if it is not frozen; the same in a copy of the process. Guarded by the mutex.
    std::thread::id mFrozenBy;
};

/// Has the mutex as long as it lives.
class FreezableMutexLock : boost::noncopyable {
public:
    explicit FreezableMutexLock(FreezableMutex& ioMutex) : mLock(ioMutex.mMutex) {
        if (ioMutex.mFrozenBy != std::thread::id()) {
            AwaitThaw(ioMutex);
        }
    }

private:
    void AwaitThaw(FreezableMutex& ioMutex);

    std::unique_lock<std::mutex> mLock;
};

} // namespace brindle::threads
