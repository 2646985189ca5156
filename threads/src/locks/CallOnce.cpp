#include <brindle/threads/CallOnce.h>

#include "threads/src/locks/Guarded.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <vector>

namespace brindle::threads {

namespace {

/// The flags whose routine runs at the moment. Routines of different flags do not hold each other
/// up.
class FlagsInProgress {
public:
    /// Waits until no routine of the flag runs. True if it is the caller's turn to run it, which it
    /// then has to `Leave`.
    bool Enter(std::int32_t& ioFlag) {
        std::unique_lock<std::mutex> lock(mMutex);
        mLeft.wait(lock, [&] { return Find(ioFlag) == mFlags.end(); });
        if (__atomic_load_n(&ioFlag, __ATOMIC_ACQUIRE) != 0) {
            return false;
        }
        mFlags.push_back(&ioFlag);
        return true;
    }

    void Leave(std::int32_t& ioFlag) {
        std::lock_guard<std::mutex> const lock(mMutex);
        mFlags.erase(Find(ioFlag));
        mLeft.notify_all();
    }

private:
    std::vector<std::int32_t*>::iterator Find(std::int32_t& ioFlag) {
        return std::find(mFlags.begin(), mFlags.end(), &ioFlag);
    }

    std::mutex mMutex;
    std::condition_variable mLeft;
    std::vector<std::int32_t*> mFlags;
};

FlagsInProgress& InProgress() {
    static auto* const flags = new FlagsInProgress; // never destroyed: a static may need it at exit
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
    Guarded([&] {
        if (InProgress().Enter(ioFlag)) {
            Turn const turn(ioFlag);
            inRoutine();
            __atomic_store_n(&ioFlag, 1, __ATOMIC_RELEASE);
        }
    });
}

} // namespace brindle::threads
