#include "threads/src/locks/FreezableMutex.h"

#include <new>

namespace brindle::threads {

void FreezableMutex::Freeze() {
    FreezableMutexLock const lock(*this);
    mFrozenBy = std::this_thread::get_id();
}

void FreezableMutex::Thaw() {
    FreezableMutexLock const lock(*this);
    mFrozenBy = std::thread::id();
    mThawed.notify_all();
}

void FreezableMutex::ThawInChild() {
    // A thread that is not here may have it, or sleep.
    new (this) FreezableMutex;
}

void FreezableMutexLock::AwaitThaw(FreezableMutex& ioMutex) {
    std::thread::id const self = std::this_thread::get_id();
    ioMutex.mThawed.wait(
        mLock, [&] { return ioMutex.mFrozenBy == std::thread::id() || ioMutex.mFrozenBy == self; });
}

} // namespace brindle::threads
