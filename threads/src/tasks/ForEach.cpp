#include <brindle/threads/ForEach.h>

#include "utility/src/base/Mutex.h"

#include <boost/noncopyable.hpp>
#include <boost/smart_ptr/make_shared.hpp>

#include <chrono>
#include <exception>

namespace brindle::threads::impl {

namespace {

using Clock = std::chrono::steady_clock;

/// How long a thread should compute before it claims more indices, which takes some 0.1 µs.
constexpr std::chrono::microseconds kTimePerClaim{20};
/// Claims are no larger, because the next items may take much longer than the last ones did.
constexpr std::size_t kLargestClaim = 256;

/// A run, which the calling thread shares with its helpers on the executor. A helper that comes
/// after the end finds nothing to claim, and calls nothing.
class ForEachRun : boost::noncopyable {
public:
    using Pointer = boost::shared_ptr<ForEachRun>;

    ForEachRun(std::size_t inCount, ForEachCalls const& inCalls, std::size_t inMostAhead,
               std::size_t inMostHelpers)
        : mCount(inCount), mCalls(inCalls), mMostAhead(inMostAhead), mMostHelpers(inMostHelpers),
          mIsComputed(inCalls.deliver != nullptr ? inMostAhead : 0) {}

    /// The part of the calling thread.
    static void Run(Pointer const& inRun, AsyncExecutor* inExecutor);

private:
    void Help();
    void PostHelpers(Pointer const& inRun, AsyncExecutor* inExecutor, std::size_t inRoom);
    void DeliverAll(Pointer const& inRun, AsyncExecutor* inExecutor);
    bool TakeComputed(std::size_t inIndex);
    void WaitUntilComputed(std::size_t inIndex);
    bool ComputeSome(std::size_t& ioClaim, bool inIsHelper);
    bool Claim(std::size_t inCount, bool inIsHelper, std::size_t& outFirst, std::size_t& outEnd);
    std::size_t Room() const BRN_REQUIRES(mMutex);
    void NoteComputed(std::size_t inFirst, std::size_t inEnd);
    void NoteFailure(std::exception_ptr inFailure);
    std::exception_ptr Close();

    std::size_t const mCount;
    ForEachCalls const mCalls; // not used after the run was closed
    std::size_t const mMostAhead;
    std::atomic<bool> mIsStopped{false}; // after a failure
    utility::Mutex mMutex;
    utility::Condition mChanged; // for the calling thread
    std::size_t mMostHelpers BRN_GUARDED_BY(mMutex);
    std::size_t mHelpersOnTheirWay BRN_GUARDED_BY(mMutex) = 0;
    std::size_t mHelpers BRN_GUARDED_BY(mMutex) = 0;
    std::size_t mNext BRN_GUARDED_BY(mMutex) = 0;      // the first index that nobody has claimed
    std::size_t mDelivered BRN_GUARDED_BY(mMutex) = 0; // the indices below it
    // A ring of the indices that may be computed before they are delivered.
    std::vector<bool> mIsComputed BRN_GUARDED_BY(mMutex);
    std::exception_ptr mFailure BRN_GUARDED_BY(mMutex);
    bool mIsClosed BRN_GUARDED_BY(mMutex) = false;
};

void ForEachRun::Run(Pointer const& inRun, AsyncExecutor* inExecutor) {
    if (inRun->mCalls.deliver != nullptr) {
        inRun->DeliverAll(inRun, inExecutor);
    } else {
        inRun->PostHelpers(inRun, inExecutor, 1);
        std::size_t claim = 1;
        while (inRun->ComputeSome(claim, false)) {
        }
    }
    if (std::exception_ptr const failure = inRun->Close()) {
        std::rethrow_exception(failure);
    }
}

/// What a helper does: computes as long as there is something to claim. It does not wait for more,
/// since the executor has other work.
void ForEachRun::Help() {
    {
        utility::MutexLock const lock(mMutex);
        --mHelpersOnTheirWay;
        ++mHelpers;
    }
    std::size_t claim = 1;
    while (ComputeSome(claim, true)) {
    }
}

/// Posts the helpers that are missing, if there are indices to claim and room for so many results.
void ForEachRun::PostHelpers(Pointer const& inRun, AsyncExecutor* inExecutor, std::size_t inRoom) {
    std::size_t missing = 0;
    {
        utility::MutexLock const lock(mMutex);
        std::size_t const present = mHelpers + mHelpersOnTheirWay;
        if (mNext == mCount || Room() < inRoom || present >= mMostHelpers) {
            return;
        }
        missing = std::min(mMostHelpers - present, mCount - mNext);
        mHelpersOnTheirWay += missing;
    }
    for (; missing > 0; --missing) {
        bool isAccepted = false;
        try {
            isAccepted = inExecutor->Post([inRun] { inRun->Help(); }, 0);
        } catch (...) { // the calling thread can do without
        }
        if (!isAccepted) {
            utility::MutexLock const lock(mMutex);
            mHelpersOnTheirWay -= missing;
            mMostHelpers = 0;
            return;
        }
    }
}

void ForEachRun::DeliverAll(Pointer const& inRun, AsyncExecutor* inExecutor) {
    std::size_t claim = 1;
    for (std::size_t next = 0; next < mCount && !mIsStopped;) {
        if (TakeComputed(next)) {
            // While delivering holds the others up, helpers are posted for many items, not for
            // each.
            PostHelpers(inRun, inExecutor, (mMostAhead + 1) / 2);
            try {
                mCalls.deliver(mCalls.context, next++);
            } catch (...) {
                NoteFailure(std::current_exception());
            }
        } else {
            PostHelpers(inRun, inExecutor, 1);
            if (!ComputeSome(claim, false)) {
                WaitUntilComputed(next);
            }
        }
    }
}

/// Notes that the indices below this one are delivered. Whether this one is computed.
bool ForEachRun::TakeComputed(std::size_t inIndex) {
    utility::MutexLock const lock(mMutex);
    mDelivered = inIndex;
    auto isComputed = mIsComputed[inIndex % mMostAhead];
    bool const result = isComputed;
    isComputed = false;
    return result;
}

/// Blocks until the next index to be delivered is computed, which another thread has claimed.
void ForEachRun::WaitUntilComputed(std::size_t inIndex) {
    utility::MutexLock lock(mMutex);
    while (!mIsStopped && !mIsComputed[inIndex % mMostAhead]) {
        mChanged.Wait(lock);
    }
}

/// Computes about as many indices as the claim says, and adapts it. False if there is none to
/// claim; then a helper has left.
bool ForEachRun::ComputeSome(std::size_t& ioClaim, bool inIsHelper) {
    std::size_t first = 0;
    std::size_t end = 0;
    if (!Claim(ioClaim, inIsHelper, first, end)) {
        return false;
    }
    Clock::time_point const begun = Clock::now();
    try {
        mCalls.compute(mCalls.context, first, end, mIsStopped);
    } catch (...) {
        NoteFailure(std::current_exception());
        return true;
    }
    auto const took = Clock::now() - begun;
    if (took < kTimePerClaim / 2) {
        ioClaim = std::min(ioClaim * 2, kLargestClaim);
    } else if (took > kTimePerClaim * 2) {
        ioClaim = std::max<std::size_t>(ioClaim / 2, 1);
    }
    if (mCalls.deliver != nullptr) {
        NoteComputed(first, end);
    }
    return true;
}

/// Claims at least one index, but no more than a fair share of what is left. A helper that gets
/// none leaves in the same step, so that the calling thread, which makes room, knows who is there
/// to see it.
bool ForEachRun::Claim(std::size_t inCount, bool inIsHelper, std::size_t& outFirst,
                       std::size_t& outEnd) {
    utility::MutexLock const lock(mMutex);
    std::size_t const left = std::min(mCount - mNext, Room());
    if (left == 0 || mIsStopped) {
        mHelpers -= inIsHelper ? 1 : 0;
        if (mIsClosed && mHelpers == 0) {
            mChanged.NotifyOne();
        }
        return false;
    }
    std::size_t const share = std::max<std::size_t>(left / (2 * (mMostHelpers + 1)), 1);
    outFirst = mNext;
    mNext += std::min(inCount, share);
    outEnd = mNext;
    return true;
}

/// How many more results may be kept.
std::size_t ForEachRun::Room() const {
    return mCalls.deliver != nullptr ? mMostAhead - (mNext - mDelivered) : mCount;
}

void ForEachRun::NoteComputed(std::size_t inFirst, std::size_t inEnd) {
    utility::MutexLock const lock(mMutex);
    for (std::size_t index = inFirst; index < inEnd; ++index) {
        mIsComputed[index % mMostAhead] = true;
    }
    if (inFirst == mDelivered) {
        mChanged.NotifyOne();
    }
}

void ForEachRun::NoteFailure(std::exception_ptr inFailure) {
    utility::MutexLock const lock(mMutex);
    if (mFailure == nullptr) {
        mFailure.swap(inFailure);
    }
    mIsStopped = true;
    mChanged.NotifyOne();
}

/// Waits for the helpers that have begun. Returns the first failure, or null.
std::exception_ptr ForEachRun::Close() {
    std::exception_ptr failure;
    utility::MutexLock lock(mMutex);
    mIsClosed = true;
    while (mHelpers > 0) {
        mChanged.Wait(lock);
    }
    std::vector<bool>().swap(mIsComputed); // helpers that come later may keep the run for long
    failure.swap(mFailure);
    return failure;
}

std::size_t HelpersOf(AsyncExecutor& ioExecutor) {
    std::int32_t const threads = ioExecutor.GetThreadCount();
    // The calling thread cannot help itself.
    std::int32_t const own = threads > 0 && ioExecutor.IsCurrentThreadExecutorThread() ? 1 : 0;
    return static_cast<std::size_t>(std::max(threads - own, 0));
}

} // namespace

void RunForEach(boost::shared_ptr<AsyncExecutor> const& inExecutor, std::size_t inCount,
                ForEachCalls const& inCalls, std::size_t inMostAhead) {
    if (inCount == 0) {
        return;
    }
    std::size_t const helpers =
        inExecutor == nullptr || inCount == 1 ? 0 : std::min(HelpersOf(*inExecutor), inCount - 1);
    ForEachRun::Run(boost::make_shared<ForEachRun>(inCount, inCalls, inMostAhead, helpers),
                    inExecutor.get());
}

} // namespace brindle::threads::impl
