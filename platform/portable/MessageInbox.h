#pragma once

#include "platform/MessageLoop.h"
#include "platform/linux/FileDescriptor.h"

#include <poll.h>
#include <sys/eventfd.h>

#include <atomic>
#include <cstdint>

namespace brindle::platform {

/// Goes through the steps of an inbox without a pause between them.
struct Unpaused {
    static void Pause() noexcept {}
};

/// Carries messages from any thread to the one that owns the inbox, oldest first, without a lock,
/// and keeps a descriptor readable as long as there are any. `Steps::Pause` stands between the
/// steps that other threads may come in between. docs/concurrency/message-inbox.md tells why it is
/// right.
template <typename Steps>
class MessageInbox {
public:
    MessageInbox() noexcept : mDescriptor(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}
    MessageInbox(MessageInbox const&) = delete;
    MessageInbox& operator=(MessageInbox const&) = delete;
    ~MessageInbox() { Close(); }

    /// -1 if the system had none.
    int Descriptor() const noexcept { return mDescriptor.Get(); }

    /// Appends it. False if the inbox is closed. Any thread; the caller keeps the inbox alive.
    bool Push(boost::intrusive_ptr<Message> inMessage) noexcept {
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

    // The owner.

    /// Takes over what was pushed. How many messages there have been up to now.
    std::uint64_t Gather() noexcept {
        Message const* const newest = mNewest.load(std::memory_order_relaxed);
        if (newest != nullptr && newest != Closed()) {
            Append(mNewest.exchange(nullptr, std::memory_order_acquire));
        }
        return mGathered;
    }

    /// Whether there is one to pop; gathers only if it has to.
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

    /// How many messages have been popped up to now.
    std::uint64_t Popped() const noexcept { return mPopped; }

    /// Makes the descriptor unreadable if no message waits.
    void Settle() noexcept {
        if (mOldest != nullptr) {
            return;
        }
        eventfd_t count = 0;
        ::eventfd_read(mDescriptor.Get(), &count);
        Steps::Pause();
        mRound += 2;
        mSignal.store(mRound, std::memory_order_seq_cst);
        Steps::Pause();
        if (mNewest.load(std::memory_order_seq_cst) != nullptr) {
            Signal();
        }
    }

    /// Blocks until the descriptor is readable.
    void Await() const noexcept {
        pollfd watched{mDescriptor.Get(), POLLIN, 0};
        Uninterrupted([&] { return ::poll(&watched, 1, -1); });
    }

    /// Takes no more messages, and releases those that are left.
    void Close() noexcept {
        if (mNewest.load(std::memory_order_relaxed) != Closed()) {
            Append(mNewest.exchange(Closed(), std::memory_order_acquire));
        }
        while (Pop() != nullptr) {
        }
    }

private:
    static Message* Closed() noexcept { return reinterpret_cast<Message*>(std::uintptr_t{1}); }

    /// Newest first, as they were pushed.
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

    /// Makes the descriptor readable, unless somebody has done so since the last `Settle`.
    void Signal() noexcept {
        std::uint64_t round = mSignal.load(std::memory_order_seq_cst);
        if ((round & 1) != 0) {
            return;
        }
        Steps::Pause();
        ::eventfd_write(mDescriptor.Get(), 1);
        Steps::Pause();
        // Fails if a round has begun meanwhile, in which the descriptor may have been reset.
        mSignal.compare_exchange_strong(round, round + 1, std::memory_order_seq_cst,
                                        std::memory_order_relaxed);
    }

    FileDescriptor const mDescriptor;
    std::atomic<Message*> mNewest{nullptr}; // of a list that leads to older ones
    // The owner begins a round with an even number; who has made the descriptor readable in it
    // turns that odd.
    std::atomic<std::uint64_t> mSignal{0};

    // The owner's alone, apart from the line that posters write to.
    alignas(64) std::uint64_t mRound = 0;
    Message* mOldest = nullptr;
    Message* mLast = nullptr; // means something if there is an oldest
    std::uint64_t mGathered = 0;
    std::uint64_t mPopped = 0;
};

} // namespace brindle::platform
