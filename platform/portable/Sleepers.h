#pragma once

#include "platform/SleepOnWord.h"

#include <atomic>
#include <chrono>
#include <cstdint>

namespace brindle::platform {

/// The threads that sleep because a queue is empty. A thread that found the queue empty enrolls,
/// looks once more, and only then sleeps; a thread that has put something into the queue calls
/// `WakeOne`. Any thread may call any operation.
///
/// A wake-up is promised, and then claimed by the thread that wakes. As long as a promise is
/// unclaimed, further calls wake nobody else; so a thread that was woken, took something and sees
/// more in the queue calls `WakeOne` itself. A thread that has been woken may get no processor for
/// a long time. Therefore a second sleeper is woken with it and keeps watch: it sleeps for a short
/// time only, and then looks into the queue itself.
///
/// Which sleeper wakes is chosen: each has a bit of the kernel's wake-up mask, the lowest that was
/// free, and the one with the lowest bit wakes. So work that comes now and then finds the same
/// thread again, with warm caches. Threads that sleep with a deadline have no bit of their own and
/// are woken last.
///
/// docs/concurrency/completion-port.md proves that no wake-up is lost; `Steps` is called between
/// the atomic steps.
template <typename Steps>
class Sleepers {
public:
    /// Called after something was put into the queue.
    void WakeOne() noexcept {
        std::uint64_t state = mState.load();
        bool isMine = false;
        while (IsAnyEnrolled(state) && Promises(state) == 0 && !isMine) {
            Steps::Pause();
            isMine = mState.compare_exchange_weak(state, Promising(state));
        }
        if (isMine) {
            state = Promising(state);
            Steps::Pause();
        }
        // An earlier promise is relied on only if a thread watches over it.
        bool const isWatchNeeded = IsAnyEnrolled(state) && !mIsWatched.load();
        if (isMine || isWatchNeeded) {
            WakeLowest();
        }
        if (isWatchNeeded) {
            WakeOnWord(PromiseWord(), kAnySleeper);
        }
    }

    /// The promises when a thread enrolled.
    class Enrolment {
        friend Sleepers;
        explicit Enrolment(std::uint64_t inState) noexcept : state(inState) {}
        std::uint64_t state;
    };

    /// Followed by one more look into the queue, and then by `Withdraw` or `Sleep`.
    [[nodiscard]] Enrolment Enroll() noexcept { return Enrolment(mState.fetch_add(kOneEnrolled)); }

    /// For a thread that enrolled and then found something. If there is a choice, it leaves
    /// promises to the threads that have found nothing.
    void Withdraw() noexcept {
        std::uint64_t state = mState.load();
        Steps::Pause();
        while (!mState.compare_exchange_weak(
            state, state - (IsAnyEnrolled(state) ? kOneEnrolled : kOnePromise))) {
        }
    }

    /// Blocks until the deadline, false, or until the thread is to look into the queue, true.
    /// Either way it is no longer enrolled.
    bool Sleep(Enrolment const& inEnrolment, Deadline const& inDeadline) noexcept {
        std::uint32_t const bit = inDeadline.IsNever() ? TakeBit() : kSharedBit;
        bool const isWoken = SleepWith(bit, inEnrolment.state, inDeadline);
        Steps::Pause();
        ReleaseBit(bit);
        return isWoken;
    }

private:
    // From low to high: 32 bits count promised wake-ups that no thread has claimed yet, 22 bits the
    // enrolled threads without a promise (the kernel has no more threads), and 10 bits all promises
    // that were ever made, from 0 again after the last. Each thread that enrolled leaves by taking
    // one off either of the first two.
    static constexpr std::uint64_t kOnePromise = 1;
    static constexpr std::uint64_t kOneEnrolled = std::uint64_t{1} << 32;
    static constexpr std::uint64_t kOneMade = std::uint64_t{1} << 54;

    // The bit of threads that have none of their own. Which bits are taken is only a hint: where it
    // is wrong, any sleeper is woken.
    static constexpr std::uint32_t kSharedBit = std::uint32_t{1} << 31;

    // Long compared to a wake-up, which takes some microseconds, and so short that nobody minds to
    // wait for it.
    static constexpr std::chrono::milliseconds kWatchTime{2};

    std::uint32_t TakeBit() noexcept {
        std::uint32_t taken = mTakenBits.load(std::memory_order_relaxed);
        for (;;) {
            std::uint32_t const bit = ~taken & (taken + 1);
            if (bit == kSharedBit) {
                return kSharedBit;
            }
            if (mTakenBits.compare_exchange_weak(taken, taken | bit, std::memory_order_relaxed)) {
                return bit;
            }
        }
    }

    void ReleaseBit(std::uint32_t inBit) noexcept {
        if (inBit != kSharedBit) {
            mTakenBits.fetch_and(~inBit, std::memory_order_relaxed);
        }
    }

    void WakeLowest() noexcept {
        std::uint32_t const taken = mTakenBits.load(std::memory_order_relaxed);
        std::uint32_t const lowest = taken & ~(taken - 1);
        if (lowest == 0 || !WakeOnWord(PromiseWord(), lowest)) {
            WakeOnWord(PromiseWord(), kAnySleeper);
        }
    }

    bool SleepWith(std::uint32_t inBit, std::uint64_t inEnrolled,
                   Deadline const& inDeadline) noexcept {
        bool isWatching = false;
        bool isTime = false;
        for (bool hasSlept = false;; hasSlept = true) {
            std::uint64_t state = mState.load();
            Steps::Pause();
            while (Promises(state) > 0 || isTime) {
                std::uint64_t const one = Promises(state) > 0 ? kOnePromise : kOneEnrolled;
                if (mState.compare_exchange_weak(state, state - one)) {
                    if (isWatching) {
                        mIsWatched.store(false);
                    }
                    return one == kOnePromise || !inDeadline.HasPassed();
                }
            }
            // A thread that was woken, or enrolled while there was a promise or before it was made,
            // and now gets none, is the watch over the thread that has claimed it.
            if (!isWatching && (hasSlept || IsPromiseSince(inEnrolled, state))) {
                Steps::Pause();
                isWatching = !mIsWatched.exchange(true);
            }
            Steps::BeforeSleep();
            isTime = !SleepOnWord(PromiseWord(), 0, inBit,
                                  isWatching ? inDeadline.OrIn(kWatchTime) : inDeadline);
        }
    }

    static std::uint64_t Promising(std::uint64_t inState) noexcept {
        return inState - kOneEnrolled + kOnePromise + kOneMade;
    }

    static bool IsAnyEnrolled(std::uint64_t inState) noexcept {
        return inState % kOneMade >= kOneEnrolled;
    }

    static bool IsPromiseSince(std::uint64_t inEnrolled, std::uint64_t inState) noexcept {
        return Promises(inEnrolled) > 0 || inEnrolled / kOneMade != inState / kOneMade;
    }

    static std::uint32_t Promises(std::uint64_t inState) noexcept {
        return static_cast<std::uint32_t>(inState);
    }

    /// The half with the promises, which the kernel compares with 0 before it puts a thread to
    /// sleep.
    std::uint32_t* PromiseWord() noexcept {
        auto* const halves = reinterpret_cast<std::uint32_t*>(&mState);
        return __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__ ? halves : halves + 1;
    }

    std::atomic<std::uint64_t> mState{0};
    std::atomic<std::uint32_t> mTakenBits{0};
    std::atomic<bool> mIsWatched{false}; // a sleeper looks into the queue within the watch time
};

} // namespace brindle::platform
