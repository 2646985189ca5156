#include <brindle/threads/LoopCall.h>

#include "platform/Fork.h"
#include "threads/src/tasks/CallFrame.h"
#include "utility/src/base/Mutex.h"

#include <boost/smart_ptr/intrusive_ptr.hpp>

namespace brindle::threads::impl {

struct LoopCall::State {
    // In a forked child, a thread that does not exist there may hold the mutex or be in a call.
    std::uint32_t const forkCount = platform::ForkCount();
    utility::Mutex mutex;
    utility::Condition hasLeft;
    bool isPosted BRN_GUARDED_BY(mutex) = false; // and has not begun
    bool isClosed BRN_GUARDED_BY(mutex) = false;
    bool isLastToRelease BRN_GUARDED_BY(mutex) = false; // the last call releases the function
    std::size_t inside BRN_GUARDED_BY(mutex) = 0;       // calls that have begun
};

LoopCall::LoopCall() : mState(std::make_unique<State>()) {}
LoopCall::~LoopCall() = default;

void LoopCall::Post(AsyncExecutor& ioExecutor) {
    {
        utility::MutexLock const lock(mState->mutex);
        if (mState->isClosed || mState->isPosted) {
            return;
        }
        mState->isPosted = true;
    }
    auto const takeBack = [this] {
        utility::MutexLock const lock(mState->mutex);
        mState->isPosted = false;
    };
    try {
        if (!ioExecutor.Post([call = boost::intrusive_ptr<LoopCall>(this)] { call->Run(); }, 0)) {
            takeBack();
        }
    } catch (...) {
        takeBack();
        throw;
    }
}

void LoopCall::Close() noexcept {
    if (platform::ForkCount() != mState->forkCount) {
        return;
    }
    std::size_t const own = CallFrame::CountOf(this);
    {
        utility::MutexLock lock(mState->mutex);
        mState->isClosed = true;
        mState->isLastToRelease = own > 0;
        while (mState->inside > own) {
            mState->hasLeft.Wait(lock);
        }
    }
    if (own == 0) {
        ReleaseFunction();
    }
}

void LoopCall::Run() {
    {
        utility::MutexLock const lock(mState->mutex);
        if (mState->isClosed) {
            return;
        }
        mState->isPosted = false;
        ++mState->inside;
    }
    try {
        CallFrame const frame(this);
        Call();
    } catch (...) {
        Leave();
        throw;
    }
    Leave();
}

void LoopCall::Leave() noexcept {
    bool isToRelease = false;
    {
        utility::MutexLock const lock(mState->mutex);
        --mState->inside;
        isToRelease = mState->isLastToRelease && mState->inside == 0;
        if (mState->isClosed) {
            mState->hasLeft.NotifyAll();
        }
    }
    if (isToRelease) {
        ReleaseFunction();
    }
}

} // namespace brindle::threads::impl
