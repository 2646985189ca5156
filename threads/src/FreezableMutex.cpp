#include "threads/src/FreezableMutex.h"

#include "platform/Process.h"

#include <boost/thread/thread.hpp>

#include <new>

namespace brindle::threads {

void FreezableMutex::Freeze() {
    FreezableMutexLock const lock(*this);
    mFrozenBy = platform::ThreadId();
}

void FreezableMutex::Thaw() {
    FreezableMutexLock const lock(*this);
    mFrozenBy = 0;
    mThawed.notify_all();
}

void FreezableMutex::ThawInChild() {
    // A thread that is not here may have it, or sleep.
    new (this) FreezableMutex;
}

void FreezableMutexLock::AwaitThaw(FreezableMutex& ioMutex) {
    std::uint32_t const self = platform::ThreadId();
    // A client's interruption of this thread is for its own waits.
    boost::this_thread::disable_interruption const uninterrupted;
    while (ioMutex.mFrozenBy != 0 && ioMutex.mFrozenBy != self) {
        ioMutex.mThawed.wait(mLock);
    }
}

} // namespace brindle::threads
