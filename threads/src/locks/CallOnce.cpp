#include <brindle/threads/CallOnce.h>

#include "threads/src/locks/ThreadErrors.h"
#include "utility/src/base/Mutex.h"

#include <algorithm>
#include <vector>

namespace brindle::threads {

namespace {

/// The flags whose routines are running. Callers of different flags do not wait for each other.
class FlagsInProgress {
public:
    /// Waits until no routine of this flag is running. True if the caller is to run it, and then to
    /// call `Leave`; false if it has been run.
    bool Enter(std::int32_t& ioFlag) {
        utility::MutexLock lock(mMutex);
        while (Find(ioFlag) != mFlags.end()) {
            mLeft.Wait(lock);
        }
        if (__atomic_load_n(&ioFlag, __ATOMIC_ACQUIRE) != 0) {
            return false;
        }
        mFlags.push_back(&ioFlag);
        return true;
    }

    void Leave(std::int32_t& ioFlag) {
        utility::MutexLock const lock(mMutex);
        mFlags.erase(Find(ioFlag));
        mLeft.NotifyAll();
    }

private:
    std::vector<std::int32_t*>::iterator Find(std::int32_t& ioFlag) BRN_REQUIRES(mMutex) {
        return std::find(mFlags.begin(), mFlags.end(), &ioFlag);
    }

    utility::Mutex mMutex;
    utility::Condition mLeft;
    std::vector<std::int32_t*> mFlags BRN_GUARDED_BY(mMutex);
};

FlagsInProgress& InProgress() {
    static auto* const flags =
        new FlagsInProgress; // never destroyed: static objects of clients may call until the end
    return *flags;
}

class Turn {
public:
    explicit Turn(std::int32_t& ioFlag) : mFlag(ioFlag) {}
    Turn(Turn const&) = delete;
    Turn& operator=(Turn const&) = delete;
    ~Turn() { InProgress().Leave(mFlag); }

private:
    std::int32_t& mFlag;
};

} // namespace

void CallOnce(void (*inRoutine)(), std::int32_t& ioFlag) {
    if (__atomic_load_n(&ioFlag, __ATOMIC_ACQUIRE) != 0) {
        return;
    }
    ReportingThreadErrors([&] {
        if (InProgress().Enter(ioFlag)) {
            Turn const turn(ioFlag);
            inRoutine();
            __atomic_store_n(&ioFlag, 1, __ATOMIC_RELEASE);
        }
    });
}

} // namespace brindle::threads
