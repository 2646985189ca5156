#pragma once

#include <brindle/time/TickTime.h>

#include <chrono>
#include <cstdint>
#include <limits>
#include <ratio>

/// Media time and the durations of the standard library:
///
///     auto const wait = time::ToChrono<std::chrono::milliseconds>(time);
///     TickTime const elapsed = time::FromChrono(std::chrono::steady_clock::now() - start);
namespace brindle::time {

/// A duration that is a `TickTime` exactly.
using TickDuration = std::chrono::duration<std::int64_t, std::ratio<1, kTicksPerSecond>>;

namespace impl {

/// `inCount * inNumerator / inDenominator`, truncated toward zero, and the nearest 64-bit number if
/// it is out of range.
constexpr std::int64_t Scaled(std::int64_t inCount, std::int64_t inNumerator,
                              std::int64_t inDenominator) noexcept {
    __extension__ using Wide = __int128;
    auto const value = static_cast<Wide>(inCount) * inNumerator / inDenominator;
    constexpr Wide kLeast = std::numeric_limits<std::int64_t>::min();
    constexpr Wide kMost = std::numeric_limits<std::int64_t>::max();
    return static_cast<std::int64_t>(value < kLeast ? kLeast : value > kMost ? kMost : value);
}

} // namespace impl

/// The duration in whole units, truncated toward zero; what does not fit becomes the nearest
/// duration. `Duration` counts in integers of at most 64 bits.
template <typename Duration>
[[nodiscard]] constexpr Duration ToChrono(TickTime const& inTime) noexcept {
    static_assert(std::is_integral_v<typename Duration::rep>, "the duration counts in integers");
    using Ratio = std::ratio_divide<std::ratio<1, kTicksPerSecond>, typename Duration::period>;
    auto const count = impl::Scaled(inTime.GetTicks(), Ratio::num, Ratio::den);
    constexpr auto kLeast = std::numeric_limits<typename Duration::rep>::min();
    constexpr auto kMost = std::numeric_limits<typename Duration::rep>::max();
    return Duration(count < kLeast  ? kLeast
                    : count > kMost ? kMost
                                    : static_cast<typename Duration::rep>(count));
}

/// The time in whole ticks, truncated toward zero; what does not fit becomes the nearest time.
template <typename Count, typename Period>
[[nodiscard]] constexpr TickTime
FromChrono(std::chrono::duration<Count, Period> const& inDuration) noexcept {
    using Ratio = std::ratio_divide<Period, std::ratio<1, kTicksPerSecond>>;
    if constexpr (std::is_integral_v<Count>) {
        return TickTime::TicksToTickTime(
            impl::Scaled(static_cast<std::int64_t>(inDuration.count()), Ratio::num, Ratio::den));
    } else {
        return TickTime(static_cast<double>(inDuration.count()) * Period::num / Period::den);
    }
}

} // namespace brindle::time
