#pragma once

#include <chrono>

namespace brindle::platform {

/// Until when a thread waits: a time by the system's clock, a duration, or without a limit.
class Deadline {
public:
    using Nanoseconds = std::chrono::nanoseconds;
    using SystemTime = std::chrono::time_point<std::chrono::system_clock, Nanoseconds>;

    static Deadline Never() noexcept { return {Kind::kNever, Nanoseconds(0)}; }
    /// When the system's clock shows this time. If the clock is set, or the machine was suspended,
    /// the wait follows the clock.
    static Deadline At(SystemTime inTime) noexcept {
        return {Kind::kSystemClock, inTime.time_since_epoch()};
    }
    /// After this time of running, by a clock that nobody sets.
    static Deadline In(Nanoseconds inDuration) noexcept {
        return {Kind::kSteadyClock, Nanoseconds(SteadyNow() + inDuration)};
    }

    bool IsNever() const noexcept { return mKind == Kind::kNever; }
    bool IsBySystemClock() const noexcept { return mKind == Kind::kSystemClock; }
    /// The time by its clock, since that clock's epoch.
    Nanoseconds SinceEpoch() const noexcept { return mTime; }

    /// This deadline, or a duration if that ends earlier.
    Deadline OrIn(Nanoseconds inDuration) const noexcept {
        return !IsNever() && mTime - Now() < inDuration ? *this : In(inDuration);
    }
    bool HasPassed() const noexcept { return !IsNever() && mTime <= Now(); }

private:
    enum class Kind { kNever, kSystemClock, kSteadyClock };

    Deadline(Kind inKind, Nanoseconds inTime) noexcept : mKind(inKind), mTime(inTime) {}

    static Nanoseconds SteadyNow() noexcept {
        return std::chrono::steady_clock::now().time_since_epoch();
    }
    Nanoseconds Now() const noexcept {
        return IsBySystemClock() ? Nanoseconds(std::chrono::system_clock::now().time_since_epoch())
                                 : SteadyNow();
    }

    Kind mKind;
    Nanoseconds mTime;
};

} // namespace brindle::platform
