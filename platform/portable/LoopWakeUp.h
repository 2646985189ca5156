#pragma once

#include "platform/MessageLoop.h"
#include "platform/portable/MessageInbox.h"
#include "utility/src/base/Mutex.h"

#include <boost/noncopyable.hpp>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace brindle::platform {

/// Calls a function when messages come to a loop that watches no descriptor. A loop that gathers
/// after each call of the function gathers every message.
///
/// The proof is in docs/concurrency/message-inbox.md; `Steps` is called between the steps.
template <typename Steps>
class LoopWakeUp : boost::noncopyable {
public:
    /// Calls the function at once, for messages that wait already. False if there is one already.
    /// For the owner of the loop.
    [[nodiscard]] bool Set(boost::intrusive_ptr<WakeUpFunction> inFunction) noexcept {
        {
            utility::MutexLock const lock(mMutex);
            if (mFunction != nullptr) {
                return false;
            }
            mFunction = std::move(inFunction);
        }
        mIsSet.store(true, std::memory_order_seq_cst);
        BeginRound();
        Call();
        return true;
    }

    /// Blocks until the calls of other threads have returned; none comes later. Any thread may
    /// call, also in the function itself.
    void Clear() noexcept {
        boost::intrusive_ptr<WakeUpFunction> function; // destroyed after the lock
        std::size_t const own = Frame::IsIn(this) ? 1 : 0;
        utility::MutexLock lock(mMutex);
        mIsSet.store(false, std::memory_order_relaxed);
        function.swap(mFunction);
        while (mInside > own) {
            mHasLeft.Wait(lock);
        }
    }

    /// Gathers the inbox. The function is called again for messages that are pushed from now on.
    /// For the owner.
    std::uint64_t Gather(MessageInbox<Steps>& ioInbox) noexcept {
        BeginRound();
        Steps::Pause();
        return ioInbox.Gather();
    }

    /// Calls the function, unless a call in this round has returned. Any thread may call, after it
    /// has pushed a message.
    void Call() noexcept {
        if (!mIsSet.load(std::memory_order_seq_cst)) {
            return;
        }
        Steps::Pause();
        std::uint64_t round = mRound.load(std::memory_order_seq_cst);
        if ((round & 1) != 0 || Frame::IsIn(this)) {
            return;
        }
        Steps::Pause();
        boost::intrusive_ptr<WakeUpFunction> function;
        {
            utility::MutexLock const lock(mMutex);
            if (mFunction == nullptr) {
                return;
            }
            function = mFunction;
            ++mInside;
        }
        bool isWoken = false;
        {
            Frame const frame(this);
            isWoken = function->Call();
        }
        Steps::Pause();
        if (isWoken) {
            // Fails if the owner has begun a new round, and so may not see this call.
            mRound.compare_exchange_strong(round, round + 1, std::memory_order_seq_cst,
                                           std::memory_order_relaxed);
        }
        function.reset(); // destroyed here if this call has cleared it
        utility::MutexLock const lock(mMutex);
        --mInside;
        mHasLeft.NotifyAll();
    }

private:
    void BeginRound() noexcept {
        if (mIsSet.load(std::memory_order_relaxed)) {
            mRoundOfOwner += 2;
            mRound.store(mRoundOfOwner, std::memory_order_seq_cst);
        }
    }

    /// Tells a thread which functions it is in.
    class Frame : boost::noncopyable {
    public:
        explicit Frame(LoopWakeUp const* inWakeUp) noexcept : mWakeUp(inWakeUp) { S_topP = this; }
        ~Frame() { S_topP = mBelow; }

        static bool IsIn(LoopWakeUp const* inWakeUp) noexcept {
            Frame const* frame = S_topP;
            while (frame != nullptr && frame->mWakeUp != inWakeUp) {
                frame = frame->mBelow;
            }
            return frame != nullptr;
        }

    private:
        LoopWakeUp const* const mWakeUp;
        Frame const* const mBelow = S_topP;
        inline static thread_local Frame const* S_topP = nullptr;
    };

    // These two are all that a post reads of a loop without a function, or after the first post of
    // a round. The owner begins a round by storing an even number; a call that has returned in this
    // round makes it odd.
    std::atomic<bool> mIsSet{false};
    std::atomic<std::uint64_t> mRound{0};
    std::uint64_t mRoundOfOwner = 0;

    utility::Mutex mMutex;
    utility::Condition mHasLeft;
    boost::intrusive_ptr<WakeUpFunction> mFunction BRN_GUARDED_BY(mMutex);
    std::size_t mInside BRN_GUARDED_BY(mMutex) = 0; // calls that have begun
};

} // namespace brindle::platform
