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
                syscall(SYS_futex, PromiseWord(), FUTEX_WAKE_PRIVATE, 1, nullptr, nullptr, 0);
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
                             inDeadline.Get(), nullptr, FUTEX_BITSET_MATCH_ANY) != 0 &&
                     errno == ETIMEDOUT;
        }
    }

private:
    // Low half: promises to wake that nobody has claimed yet. High half: the enrolled who have
    // none. Who enrolled leaves by one of either.
    static constexpr std::uint64_t kOnePromise = 1;
    static constexpr std::uint64_t kOneEnrolled = std::uint64_t{1} << 32;

    static std::uint32_t Promises(std::uint64_t inState) noexcept {
        return static_cast<std::uint32_t>(inState);
    }

    /// The half that the kernel compares with 0 before it puts a thread to sleep.
    std::uint32_t* PromiseWord() noexcept {
        auto* const halves = reinterpret_cast<std::uint32_t*>(&mState);
        return __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__ ? halves : halves + 1;
    }

    std::atomic<std::uint64_t> mState{0};
};

} // namespace brindle::platform
