#include "threads/src/locks/FreezableMutex.h"

#include <new>

namespace brindle::threads {

void FreezableMutex::Freeze() {
    utility::MutexLock lock(mMutex);
    AwaitThaw(lock);
    mFrozenBy = std::this_thread::get_id();
}

void FreezableMutex::Thaw() {
    utility::MutexLock const lock(mMutex);
    mFrozenBy = std::thread::id();
    mThawed.NotifyAll();
}

void FreezableMutex::ThawInChild() {
    // Threads that do not exist in the child may have been about to lock the mutex, or have slept.
    new (this) FreezableMutex;
}

/// Blocks while another thread has frozen the mutex.
void FreezableMutex::AwaitThaw(utility::MutexLock& ioLock) {
    std::thread::id const self = std::this_thread::get_id();
    while (mFrozenBy != std::thread::id() && mFrozenBy != self) {
        mThawed.Wait(ioLock);
    }
}

} // namespace brindle::threads
