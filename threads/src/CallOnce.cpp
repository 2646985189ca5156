#include <brindle/threads/CallOnce.h>

#include "threads/src/Guarded.h"

#include <boost/thread/condition.hpp>
#include <boost/thread/mutex.hpp>
#include <boost/thread/thread.hpp>

#include <algorithm>
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
        // A client's interruption of this thread is for its own waits.
        boost::this_thread::disable_interruption const uninterrupted;
        boost::mutex::scoped_lock lock(mMutex);
        while (std::find(mFlags.begin(), mFlags.end(), &ioFlag) != mFlags.end()) {
            mLeft.wait(lock);
        }
        if (__atomic_load_n(&ioFlag, __ATOMIC_ACQUIRE) != 0) {
            return false;
        }
        mFlags.push_back(&ioFlag);
        return true;
    }

    void Leave(std::int32_t& ioFlag) {
        boost::mutex::scoped_lock const lock(mMutex);
        mFlags.erase(std::find(mFlags.begin(), mFlags.end(), &ioFlag));
        mLeft.notify_all();
    }

private:
    boost::mutex mMutex;
    boost::condition mLeft;
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
