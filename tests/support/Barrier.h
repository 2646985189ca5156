#pragma once

#include <condition_variable>
#include <mutex>

namespace brindle::tests {

/// Lets a number of threads go on when all of them wait, any number of times. Boost's barrier needs
/// a library that the builds for other standard libraries do not have.
class Barrier {
public:
    explicit Barrier(unsigned int inCount) : mCount(inCount) {}

    void wait() {
        std::unique_lock lock(mMutex);
        unsigned int const turn = mTurn;
        if (++mWaiting == mCount) {
            mWaiting = 0;
            ++mTurn;
            mAllHere.notify_all();
        }
        mAllHere.wait(lock, [&] { return mTurn != turn; });
    }

private:
    std::mutex mMutex;
    std::condition_variable mAllHere;
    unsigned int const mCount;
    unsigned int mWaiting = 0;
    unsigned int mTurn = 0;
};

} // namespace brindle::tests
