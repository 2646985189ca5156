#pragma once

#include <boost/noncopyable.hpp>
#include <boost/thread/condition.hpp>
#include <boost/thread/recursive_mutex.hpp>

#include <cstdint>

namespace brindle::threads {

/// A recursive mutex that a thread that is about to fork the process keeps for itself, without
/// holding it: a thread may freeze any number of them. Used through the lock below.
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

    boost::recursive_mutex mMutex;
    boost::condition mThawed;
    std::uint32_t mFrozenBy = 0; // a thread, 0 if none; guarded by the mutex
};

/// Has the mutex as long as it lives.
class FreezableMutexLock : boost::noncopyable {
public:
    explicit FreezableMutexLock(FreezableMutex& ioMutex) : mLock(ioMutex.mMutex) {
        if (ioMutex.mFrozenBy != 0) {
            AwaitThaw(ioMutex);
        }
    }

private:
    void AwaitThaw(FreezableMutex& ioMutex);

    boost::recursive_mutex::scoped_lock mLock;
};

} // namespace brindle::threads
