#pragma once

#include "platform/MessageLoop.h"
#include "platform/WakeUpEvent.h"

#include <atomic>
#include <cstdint>

namespace brindle::platform {

/// Carries messages from any thread to the thread that owns the inbox, oldest first, without a
/// lock. Its descriptor is readable as long as messages wait.
///
/// The proof is in docs/concurrency/message-inbox.md; `Steps` is called between the atomic steps.
template <typename Steps>
class MessageInbox {
public:
    MessageInbox() noexcept = default;
    MessageInbox(MessageInbox const&) = delete;
    MessageInbox& operator=(MessageInbox const&) = delete;
    ~MessageInbox() { Close(); }

    /// -1 if the system had none.
    int Descriptor() const noexcept { return mEvent.Descriptor(); }

    /// Appends the message. False if the inbox is closed. Any thread may call, as long as it keeps
    /// the inbox alive.
    [[nodiscard]] bool Push(boost::intrusive_ptr<Message> inMessage) noexcept {
        Message* const message = inMessage.get();
        Message* newest = mNewest.load(std::memory_order_relaxed);
        do {
            if (newest == Closed()) {
                return false;
            }
            message->mNext = newest;
            Steps::Pause();
        } while (!mNewest.compare_exchange_weak(newest, message, std::memory_order_seq_cst,
                                                std::memory_order_relaxed));
        inMessage.detach();
        Steps::Pause();
        Signal();
        return true;
    }

    /// Whether `Push` has begun to refuse messages. Any thread may call.
    bool IsClosed() const noexcept { return mNewest.load(std::memory_order_relaxed) == Closed(); }

    // The rest is for the owner.

    /// Takes over the messages that were pushed. Returns how many messages have been taken over in
    /// all.
    std::uint64_t Gather() noexcept {
        Message const* const newest = mNewest.load(std::memory_order_seq_cst);
        if (newest != nullptr && newest != Closed()) {
            Append(mNewest.exchange(nullptr, std::memory_order_acquire));
        }
        return mGathered;
    }

    /// Whether there is a message to pop. Gathers only if none is left from before.
    bool HasNext() noexcept { return mPopped != mGathered || mPopped != Gather(); }

    /// The oldest message that was gathered, or null.
    boost::intrusive_ptr<Message> Pop() noexcept {
        Message* const message = mOldest;
        if (message != nullptr) {
            mOldest = message->mNext;
            ++mPopped;
        }
        return boost::intrusive_ptr<Message>(message, false);
    }

    /// How many messages have been popped in all.
    std::uint64_t Popped() const noexcept { return mPopped; }

    /// Makes the descriptor unreadable if no message waits.
    void Settle() noexcept {
        if (mOldest == nullptr) {
            Silence();
        }
    }

    /// Makes the descriptor unreadable until another message is pushed.
    void Silence() noexcept {
        mEvent.Reset();
        Steps::Pause();
        mRound += 2;
        mSignal.store(mRound, std::memory_order_seq_cst);
        Steps::Pause();
        if (mNewest.load(std::memory_order_seq_cst) != nullptr) {
            Signal();
        }
    }

    /// Makes the descriptor readable, unless a thread has done so since it was reset. Any thread
    /// may call.
    void Signal() noexcept {
        std::uint64_t round = mSignal.load(std::memory_order_seq_cst);
        if ((round & 1) != 0) {
            return;
        }
        Steps::Pause();
        mEvent.Set();
        Steps::Pause();
        // Fails if the owner has begun a new round, and so may have reset the descriptor.
        mSignal.compare_exchange_strong(round, round + 1, std::memory_order_seq_cst,
                                        std::memory_order_relaxed);
    }

    /// Blocks until the descriptor is readable.
    void Await() const noexcept { mEvent.Await(); }

    /// Refuses further messages, and releases those that are left.
    void Close() noexcept {
        if (mNewest.load(std::memory_order_relaxed) != Closed()) {
            Append(mNewest.exchange(Closed(), std::memory_order_acquire));
        }
        while (Pop() != nullptr) {
        }
    }

private:
    static Message* Closed() noexcept { return reinterpret_cast<Message*>(std::uintptr_t{1}); }

    /// Reverses a chain that leads from the newest message to the oldest, and appends it.
    void Append(Message* inNewest) noexcept {
        Message* oldest = nullptr;
        for (Message* message = inNewest; message != nullptr; ++mGathered) {
            Message* const older = message->mNext;
            message->mNext = oldest;
            oldest = message;
            message = older;
        }
        if (oldest == nullptr) {
            return;
        }
        (mOldest == nullptr ? mOldest : mLast->mNext) = oldest;
        mLast = inNewest;
    }

    WakeUpEvent const mEvent;
    std::atomic<Message*> mNewest{nullptr}; // each message leads to the one pushed before it
    // The owner begins a round by storing an even number. A thread that has made the descriptor
    // readable in this round makes the number odd.
    std::atomic<std::uint64_t> mSignal{0};

    // Only the owner accesses these, so they are not in the cache line that posters write to.
    alignas(64) std::uint64_t mRound = 0;
    Message* mOldest = nullptr;
    Message* mLast = nullptr; // valid if there is an oldest
    std::uint64_t mGathered = 0;
    std::uint64_t mPopped = 0;
};

} // namespace brindle::platform
