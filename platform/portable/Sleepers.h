#pragma once

#include <linux/futex.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>

namespace brindle::platform {

/// A moment on the clock that no one sets, or never.
class Deadline {
public:
    static Deadline Never() noexcept { return Deadline(); }
    static Deadline In(std::uint32_t inMilliseconds) noexcept {
        Deadline deadline;
        clock_gettime(CLOCK_MONOTONIC, &deadline.mTime);
        deadline.mTime.tv_sec += inMilliseconds / 1000;
        deadline.mTime.tv_nsec += static_cast<long>(inMilliseconds % 1000) * 1'000'000;
        if (deadline.mTime.tv_nsec >= 1'000'000'000) {
            deadline.mTime.tv_nsec -= 1'000'000'000;
            ++deadline.mTime.tv_sec;
        }
        deadline.mIsNever = false;
        return deadline;
    }

    timespec const* Get() const noexcept { return mIsNever ? nullptr : &mTime; }

private:
    timespec mTime{};
    bool mIsNever = true;
};

/// Those who wait for something to be there. They enroll, look once more, and only then sleep; who
/// put something there wakes one. Any thread may call any operation.
///
/// Of those who sleep it is one in the lowest bed that wakes: threads that come and go in turn find
/// the same bed free, so work that comes now and then is done by one thread, whose caches are warm.
/// Who sleeps until a certain time takes no bed, and is left to it as long as somebody else sleeps.
///
/// As long as one who was promised to be woken has not come to look, nobody else is woken: so who
/// was woken, found something and sees more there wakes the next one itself.
/// `Steps::Pause()` stands between the atomic steps; it does nothing but in tests.
template <typename Steps>
class Sleepers {
public:
    /// Called after something was put there.
    void WakeOne() noexcept {
        std::uint64_t state = mState.load();
        while (state >= kOneEnrolled && Promises(state) == 0) {
            Steps::Pause();
            if (mState.compare_exchange_weak(state, state - kOneEnrolled + kOnePromise)) {
                Steps::Pause();
                WakeTheWarmest();
                return;
            }
        }
    }

    void Enroll() noexcept { mState.fetch_add(kOneEnrolled); }

    /// Leaves, having found something. A promise is left to those who still look for something.
    void Withdraw() noexcept {
        std::uint64_t state = mState.load();
        Steps::Pause();
        while (!mState.compare_exchange_weak(
            state, state - (state >= kOneEnrolled ? kOneEnrolled : kOnePromise))) {
        }
    }

    /// Leaves as soon as somebody is to be woken, true, or when the time has come, false.
    bool Sleep(Deadline const& inDeadline) noexcept {
        std::uint32_t const bed = inDeadline.Get() == nullptr ? TakeBed() : kNoBed;
        bool const isWoken = SleepIn(bed, inDeadline);
        Steps::Pause();
        LeaveBed(bed);
        return isWoken;
    }

private:
    // Low half: promises to wake that nobody has claimed yet. High half: the enrolled who have
    // none. Who enrolled leaves by one of either.
    static constexpr std::uint64_t kOnePromise = 1;
    static constexpr std::uint64_t kOneEnrolled = std::uint64_t{1} << 32;

    // The kernel wakes by a mask, in which each sleeper has a bit: its bed, or one for all who
    // have none. Which beds are taken is a hint. It orders nothing, and where it is wrong anyone is
    // woken.
    static constexpr std::uint32_t kNoBed = std::uint32_t{1} << 31;

    std::uint32_t TakeBed() noexcept {
        std::uint32_t taken = mBeds.load(std::memory_order_relaxed);
        for (;;) {
            std::uint32_t const bed = ~taken & (taken + 1);
            if (bed == kNoBed) {
                return kNoBed;
            }
            if (mBeds.compare_exchange_weak(taken, taken | bed, std::memory_order_relaxed)) {
                return bed;
            }
        }
    }

    void LeaveBed(std::uint32_t inBed) noexcept {
        if (inBed != kNoBed) {
            mBeds.fetch_and(~inBed, std::memory_order_relaxed);
        }
    }

    void WakeTheWarmest() noexcept {
        std::uint32_t const taken = mBeds.load(std::memory_order_relaxed);
        if (taken == 0 || !Wake(taken & ~(taken - 1))) {
            Wake(FUTEX_BITSET_MATCH_ANY);
        }
    }

    bool Wake(std::uint32_t inMask) noexcept {
        return syscall(SYS_futex, PromiseWord(), FUTEX_WAKE_BITSET_PRIVATE, 1, nullptr, nullptr,
                       inMask) > 0;
    }

    bool SleepIn(std::uint32_t inBed, Deadline const& inDeadline) noexcept {
        for (bool isTime = false;;) {
            std::uint64_t state = mState.load();
            Steps::Pause();
            while (Promises(state) > 0) {
                if (mState.compare_exchange_weak(state, state - kOnePromise)) {
                    return true;
                }
            }
            if (isTime) {
                if (mState.compare_exchange_strong(state, state - kOneEnrolled)) {
                    return false;
                }
                continue;
            }
            isTime = syscall(SYS_futex, PromiseWord(), FUTEX_WAIT_BITSET_PRIVATE, 0,
                             inDeadline.Get(), nullptr, inBed) != 0 &&
                     errno == ETIMEDOUT;
        }
    }

    static std::uint32_t Promises(std::uint64_t inState) noexcept {
        return static_cast<std::uint32_t>(inState);
    }

    /// The half that the kernel compares with 0 before it puts a thread to sleep.
    std::uint32_t* PromiseWord() noexcept {
        auto* const halves = reinterpret_cast<std::uint32_t*>(&mState);
        return __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__ ? halves : halves + 1;
    }

    std::atomic<std::uint64_t> mState{0};
    std::atomic<std::uint32_t> mBeds{0};
};

} // namespace brindle::platform
