#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>

namespace brindle::time {

/// The unit of media time, in ticks per second. A frame of every video and audio rate in common
/// use, the NTSC rates included, is a whole number of these ticks.
inline constexpr std::int64_t kTicksPerSecond = 254016000000;

namespace impl {

/// Mixes all bits into all, because times are multiples of large powers of two.
constexpr std::size_t HashOf(std::int64_t inTicks) noexcept {
    auto const mixed = static_cast<std::uint64_t>(inTicks) * 0x9e3779b97f4a7c15u;
    return static_cast<std::size_t>(mixed ^ mixed >> 32);
}

// 64-bit arithmetic that wraps, and that no operand makes trap.

constexpr std::int64_t Sum(std::int64_t inLHS, std::int64_t inRHS) noexcept {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(inLHS) +
                                     static_cast<std::uint64_t>(inRHS));
}

constexpr std::int64_t Difference(std::int64_t inLHS, std::int64_t inRHS) noexcept {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(inLHS) -
                                     static_cast<std::uint64_t>(inRHS));
}

constexpr std::int64_t Product(std::int64_t inLHS, std::int64_t inRHS) noexcept {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(inLHS) *
                                     static_cast<std::uint64_t>(inRHS));
}

/// Truncated toward zero. `inDivisor` is not 0.
constexpr std::int64_t Quotient(std::int64_t inDividend, std::int64_t inDivisor) noexcept {
    return inDivisor == -1 ? Difference(0, inDividend) : inDividend / inDivisor;
}

#if defined(__x86_64__)
/// The processor's instruction gives the least integer where the language leaves the result
/// undefined, without a comparison. The compiler's intrinsic for it would not do, for the compiler
/// folds it by other rules when the operand is a constant.
inline std::int64_t TruncatedByProcessor(double inValue) noexcept {
    std::int64_t result;
    __asm__("cvttsd2si %1, %0" : "=r"(result) : "x"(inValue));
    return result;
}
#endif

/// Truncated toward zero; the least integer for a value that is out of range or not a number.
constexpr std::int64_t Truncated(double inValue) noexcept {
#if defined(__x86_64__)
    if (!__builtin_is_constant_evaluated()) {
        return TruncatedByProcessor(inValue);
    }
#endif
    constexpr double kLimit = 9223372036854775808.0; // 2 to the 63rd
    return inValue >= -kLimit && inValue < kLimit ? static_cast<std::int64_t>(inValue)
                                                  : std::numeric_limits<std::int64_t>::min();
}

} // namespace impl

} // namespace brindle::time
