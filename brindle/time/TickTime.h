#pragma once

#include <brindle/Export.h>
#include <brindle/debug/Contract.h>
#include <brindle/time/FrameRate.h>

#include <cstdint>
#include <iosfwd>
#include <type_traits>

namespace brindle::time {

namespace impl {

/// The source that contracts name.
inline constexpr char kTickTimeSource[] = "time/src/TickTime";

/// Enables a template for the integers that no other operator takes.
template <typename Integer>
using IfOtherInteger =
    std::enable_if_t<std::is_integral_v<Integer> && !std::is_same_v<Integer, bool> &&
                         !std::is_same_v<Integer, std::int32_t> &&
                         !std::is_same_v<Integer, std::uint32_t>,
                     int>;

} // namespace impl

/// A point in media time, or a duration: an exact count of ticks, 254016000000 to the second.
///
///     TickTime const time(1000, kFrameRate_VideoNTSC);              // the start of frame 1000
///     std::int64_t const sample = time.ToFrame64(kFrameRate_Audio48000); // and the sample there
///
/// Integer arithmetic is exact and wraps silently at 64 bits. Doubles occur only where a caller
/// passes one or asks for one. A conversion from a double to ticks truncates toward zero; a double
/// that is out of range or not a number becomes the least 64-bit integer. A violated contract is
/// reported through `debug::ViolateContract`; if that returns, a division by an integer zero leaves
/// the time as it was. A plain value.
///
/// Beside the standard library: both a duration and a time point of `std::chrono`, with an integer
/// tick; `ToChrono` and `FromChrono` (brindle/time/Chrono.h) convert. Ordered and hashed as
/// integers are.
class TickTime {
public:
    constexpr TickTime() noexcept = default;

    /// From seconds.
    constexpr explicit TickTime(double inSeconds) noexcept
        : mTicks(impl::Truncated(inSeconds * static_cast<double>(kTicksPerSecond))) {}

    /// `inFrames` frames of `inFrameRate`. Contract: `inFrameRate` is not `kFrameRate_Zero`.
    constexpr TickTime(std::int64_t inFrames, FrameRate const& inFrameRate) {
        debug::CheckContract(inFrameRate != kFrameRate_Zero, "inFrameRate != kFrameRate_Zero",
                             impl::kTickTimeSource, __LINE__);
        mTicks = impl::Product(inFrameRate.GetTicksPerFrame(), inFrames);
    }

    /// The time of exactly this count, for values that were stored as ticks.
    static constexpr TickTime TicksToTickTime(std::int64_t inTicks) noexcept {
        return TickTime(Ticks{inTicks});
    }

    /// The count, for storing the time. A second has `kTicksPerSecond` of them.
    constexpr std::int64_t GetTicks() const noexcept { return mTicks; }

    /// Moves by `inFrames` frames of `inFrameRate`.
    constexpr void AddFrames(std::int64_t inFrames, FrameRate const& inFrameRate) noexcept {
        mTicks = impl::Sum(mTicks, impl::Product(inFrameRate.GetTicksPerFrame(), inFrames));
    }

    /// The number of whole frames of `inFrameRate`, truncated toward zero, so that all times within
    /// less than a frame of 0, on either side, are in frame 0. 0 for `kFrameRate_Zero` and for a
    /// rate of 0 ticks per frame.
    [[nodiscard]] constexpr std::int64_t ToFrame64(FrameRate const& inFrameRate) const noexcept {
        std::int64_t const period = inFrameRate.GetTicksPerFrame();
        // The common case costs one branch; the other rates would be wrong here, or trap.
        if (period > 0 && period != kFrameRate_Zero.GetTicksPerFrame()) {
            return mTicks / period;
        }
        return period < 0 ? impl::Quotient(mTicks, period) : 0;
    }

    /// The low 32 bits of `ToFrame64`.
    [[nodiscard]] constexpr std::int32_t ToFrame32(FrameRate const& inFrameRate) const noexcept {
        return static_cast<std::int32_t>(ToFrame64(inFrameRate));
    }

    /// The number of the frame whose start is nearest to the time; of two that are equally near,
    /// the later one. 0 for `kFrameRate_Zero` and for a rate that is not positive.
    [[nodiscard]] constexpr std::int64_t NearestFrame(FrameRate const& inFrameRate) const noexcept {
        std::int64_t const period = inFrameRate.GetTicksPerFrame();
        if (period <= 0 || inFrameRate == kFrameRate_Zero) {
            return 0;
        }
        std::int64_t const rest = mTicks % period < 0 ? mTicks % period + period : mTicks % period;
        std::int64_t const before = (mTicks - mTicks % period) / period - (mTicks % period < 0);
        return before + (rest >= period - rest);
    }

    /// Moves toward 0, to the start of the frame that `ToFrame64` gives. Contracts: `inFrameRate`
    /// is not `kFrameRate_Zero`, and its period is not 0.
    constexpr void AlignToFrame(FrameRate const& inFrameRate) {
        debug::CheckContract(inFrameRate != kFrameRate_Zero, "inFrameRate != kFrameRate_Zero",
                             impl::kTickTimeSource, __LINE__);
        std::int64_t const period = inFrameRate.GetTicksPerFrame();
        debug::CheckContract(period != 0, "inFrameRate.GetTicksPerFrame() != 0",
                             impl::kTickTimeSource, __LINE__);
        if (period != 0) {
            mTicks = impl::Product(impl::Quotient(mTicks, period), period);
        }
    }

    /// Gives the rate at which this duration is `inFrameCount` frames long. Its period is truncated
    /// toward zero, and the count is taken as a signed number. `kFrameRate_Zero` if the duration or
    /// the count is 0.
    constexpr void CalculateFrameRate(std::uint64_t inFrameCount,
                                      FrameRate& outFrameRate) const noexcept {
        outFrameRate = mTicks == 0 || inFrameCount == 0
                           ? kFrameRate_Zero
                           : FrameRate::Create(
                                 impl::Quotient(mTicks, static_cast<std::int64_t>(inFrameCount)));
    }

    /// Exact comparisons of the counts of ticks.
    constexpr bool operator==(TickTime const& inRHS) const noexcept {
        return mTicks == inRHS.mTicks;
    }
    constexpr bool operator!=(TickTime const& inRHS) const noexcept {
        return mTicks != inRHS.mTicks;
    }
    constexpr bool operator<(TickTime const& inRHS) const noexcept { return mTicks < inRHS.mTicks; }
    constexpr bool operator<=(TickTime const& inRHS) const noexcept {
        return mTicks <= inRHS.mTicks;
    }
    constexpr bool operator>(TickTime const& inRHS) const noexcept { return mTicks > inRHS.mTicks; }
    constexpr bool operator>=(TickTime const& inRHS) const noexcept {
        return mTicks >= inRHS.mTicks;
    }

    /// Exact sums and differences; what exceeds 64 bits wraps.
    constexpr TickTime& operator+=(TickTime const& inRHS) noexcept {
        mTicks = impl::Sum(mTicks, inRHS.mTicks);
        return *this;
    }
    constexpr TickTime& operator-=(TickTime const& inRHS) noexcept {
        mTicks = impl::Difference(mTicks, inRHS.mTicks);
        return *this;
    }
    [[nodiscard]] constexpr TickTime operator+(TickTime const& inRHS) const noexcept {
        return TickTime(*this) += inRHS;
    }
    [[nodiscard]] constexpr TickTime operator-(TickTime const& inRHS) const noexcept {
        return TickTime(*this) -= inRHS;
    }
    [[nodiscard]] constexpr TickTime operator-() const noexcept { return TickTime() - *this; }

    /// Makes a negative time positive, in place, and returns this object.
    constexpr TickTime& Abs() noexcept {
        if (mTicks < 0) {
            *this = -*this;
        }
        return *this;
    }

    /// Multiplications by an integer are exact, and wrap at 64 bits. With a double the product is
    /// computed in doubles and truncated toward zero.
    constexpr TickTime& operator*=(std::int32_t inValue) noexcept {
        mTicks = impl::Product(mTicks, inValue);
        return *this;
    }
    constexpr TickTime& operator*=(std::uint32_t inValue) noexcept {
        mTicks = impl::Product(mTicks, inValue);
        return *this;
    }
    constexpr TickTime& operator*=(double inValue) noexcept {
        mTicks = impl::Truncated(static_cast<double>(mTicks) * inValue);
        return *this;
    }
    [[nodiscard]] constexpr TickTime operator*(std::int32_t inValue) const noexcept {
        return TickTime(*this) *= inValue;
    }
    [[nodiscard]] constexpr TickTime operator*(std::uint32_t inValue) const noexcept {
        return TickTime(*this) *= inValue;
    }
    [[nodiscard]] constexpr TickTime operator*(double inValue) const noexcept {
        return TickTime(*this) *= inValue;
    }

    /// The same for every other integer type, whose low 64 bits count.
    template <typename Integer, impl::IfOtherInteger<Integer> = 0>
    constexpr TickTime& operator*=(Integer inValue) noexcept {
        mTicks = impl::Product(mTicks, static_cast<std::int64_t>(inValue));
        return *this;
    }
    template <typename Integer, impl::IfOtherInteger<Integer> = 0>
    [[nodiscard]] constexpr TickTime operator*(Integer inValue) const noexcept {
        return TickTime(*this) *= inValue;
    }
    /// As `inTime * inValue`, for every type of numbers.
    template <typename Number, std::enable_if_t<std::is_arithmetic_v<Number>, int> = 0>
    [[nodiscard]] friend constexpr TickTime operator*(Number inValue,
                                                      TickTime const& inTime) noexcept {
        return inTime * inValue;
    }

    /// Contract of all divisions: the divisor is not 0. The operators that make a new value report
    /// a violation twice, before they copy the time and when they divide the copy.
    constexpr TickTime& operator/=(std::int32_t inValue) { return DivideBy(inValue); }
    constexpr TickTime& operator/=(std::uint32_t inValue) { return DivideBy(inValue); }
    constexpr TickTime& operator/=(double inValue) {
        debug::CheckContract(inValue != 0, "inValue != 0", impl::kTickTimeSource, __LINE__);
        mTicks = impl::Truncated(static_cast<double>(mTicks) / inValue);
        return *this;
    }
    [[nodiscard]] constexpr TickTime operator/(std::int32_t inValue) const {
        return DividedBy(inValue);
    }
    [[nodiscard]] constexpr TickTime operator/(std::uint32_t inValue) const {
        return DividedBy(inValue);
    }
    template <typename Integer, impl::IfOtherInteger<Integer> = 0>
    constexpr TickTime& operator/=(Integer inValue) {
        return DivideBy(static_cast<std::int64_t>(inValue));
    }
    template <typename Integer, impl::IfOtherInteger<Integer> = 0>
    [[nodiscard]] constexpr TickTime operator/(Integer inValue) const {
        return DividedBy(static_cast<std::int64_t>(inValue));
    }
    [[nodiscard]] constexpr TickTime operator/(double inValue) const {
        debug::CheckContract(inValue != 0, "inValue != 0", impl::kTickTimeSource, __LINE__);
        return TickTime(*this) /= inValue;
    }

    /// The ratio of two times.
    [[nodiscard]] constexpr double operator/(TickTime const& inRHS) const {
        debug::CheckContract(inRHS.mTicks != 0, "inRHS.mTicks != 0", impl::kTickTimeSource,
                             __LINE__);
        return static_cast<double>(mTicks) / static_cast<double>(inRHS.mTicks);
    }

private:
    struct Ticks {
        std::int64_t count;
    };
    constexpr explicit TickTime(Ticks inTicks) noexcept : mTicks(inTicks.count) {}

    constexpr TickTime& DivideBy(std::int64_t inValue) {
        debug::CheckContract(inValue != 0, "inValue != 0", impl::kTickTimeSource, __LINE__);
        if (inValue != 0) {
            mTicks = impl::Quotient(mTicks, inValue);
        }
        return *this;
    }
    constexpr TickTime DividedBy(std::int64_t inValue) const {
        debug::CheckContract(inValue != 0, "inValue != 0", impl::kTickTimeSource, __LINE__);
        return TickTime(*this).DivideBy(inValue);
    }

    std::int64_t mTicks = 0;
};

inline constexpr TickTime kTickTime_Zero; ///< the start, and the duration of nothing

/// One hundred hours. This and the next two are conventions for clients: no operation tests against
/// them, clamps to them or treats the invalid time in a special way.
inline constexpr TickTime kTickTime_Max = TickTime::TicksToTickTime(91445760000000000);
/// One hundred hours before 0.
inline constexpr TickTime kTickTime_Min = TickTime::TicksToTickTime(-91445760000000000);
/// Below `kTickTime_Min`.
inline constexpr TickTime kTickTime_Invalid = TickTime::TicksToTickTime(-101606400000000000);

/// Writes the time in seconds, as the stream writes a double.
BRN_API std::basic_ostream<char>& operator<<(std::basic_ostream<char>& ioStream,
                                             TickTime const& inTime);

} // namespace brindle::time

/// Agrees with `==`.
template <>
struct std::hash<brindle::time::TickTime> {
    /// Equal values have equal hashes.
    std::size_t operator()(brindle::time::TickTime const& inTime) const noexcept {
        return brindle::time::impl::HashOf(inTime.GetTicks());
    }
};
