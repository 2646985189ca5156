#pragma once

#include <brindle/Export.h>
#include <brindle/time/Ticks.h>

#include <typeindex> // the smallest header that declares std::hash

namespace brindle::time {

/// A frame rate, stored as its period: the exact number of ticks in one frame. The NTSC rates are
/// exact, too: `kFrameRate_VideoNTSC` is 30000/1001 frames per second and no approximation.
///
///     FrameRate const rate = kFrameRate_Film24;
///     TickTime const frame100(100, rate); // see TickTime.h
///
/// A plain value. No operation reports an error.
///
/// Beside the standard library: the period of a `std::chrono::duration`, known at run time; ordered
/// and hashed as integers are, and inserted into streams by brindle/time/TimeStreams.h.
class FrameRate {
public:
    /// `kFrameRate_Zero`.
    constexpr FrameRate() noexcept = default;

    /// From frames per second. The period in ticks is truncated toward zero, and 0.0 gives
    /// `kFrameRate_Zero`. A period that is out of range or not a number becomes the least 64-bit
    /// integer. Use the constants for NTSC rates: 29.97 is not quite one of them.
    constexpr explicit FrameRate(double inFramesPerSecond) noexcept
        : mTicksPerFrame(
              inFramesPerSecond == 0.0
                  ? kZeroPeriod
                  : impl::Truncated(static_cast<double>(kTicksPerSecond) / inFramesPerSecond)) {}

    /// From ticks per frame.
    static constexpr FrameRate Create(std::int64_t inTicksPerFrame) noexcept {
        FrameRate rate;
        rate.mTicksPerFrame = inTicksPerFrame;
        return rate;
    }

    /// The rate that people call so, as a `std::optional`, for text that converts to a
    /// `std::string_view`: see `FrameRateFromName` in brindle/time/FrameRateNames.h, which has to
    /// be included.
    template <typename Text>
    [[nodiscard]] static auto FromName(Text const& inName);

    /// Frames per second; 0.0 for `kFrameRate_Zero`.
    constexpr double GetValue() const noexcept {
        return mTicksPerFrame == kZeroPeriod
                   ? 0.0
                   : static_cast<double>(kTicksPerSecond) / static_cast<double>(mTicksPerFrame);
    }

    /// The period. That of `kFrameRate_Zero` is the greatest 64-bit integer.
    constexpr std::int64_t GetTicksPerFrame() const noexcept { return mTicksPerFrame; }

    /// Exact: rates are equal if their periods have the same number of ticks.
    constexpr bool operator==(FrameRate const& inRHS) const noexcept {
        return mTicksPerFrame == inRHS.mTicksPerFrame;
    }
    constexpr bool operator!=(FrameRate const& inRHS) const noexcept {
        return mTicksPerFrame != inRHS.mTicksPerFrame;
    }
    /// Rates are ordered by frames per second, so that the longer period is the lower rate.
    /// `kFrameRate_Zero` is below every rate with a positive period.
    constexpr bool operator<(FrameRate const& inRHS) const noexcept {
        return mTicksPerFrame > inRHS.mTicksPerFrame;
    }
    constexpr bool operator<=(FrameRate const& inRHS) const noexcept {
        return mTicksPerFrame >= inRHS.mTicksPerFrame;
    }
    constexpr bool operator>(FrameRate const& inRHS) const noexcept {
        return mTicksPerFrame < inRHS.mTicksPerFrame;
    }
    constexpr bool operator>=(FrameRate const& inRHS) const noexcept {
        return mTicksPerFrame <= inRHS.mTicksPerFrame;
    }

private:
    static constexpr std::int64_t kZeroPeriod = std::numeric_limits<std::int64_t>::max();

    std::int64_t mTicksPerFrame = kZeroPeriod;
};

// These are compile-time constants, so that a division by one of them becomes a multiplication, and
// so that static objects may use them in any order of initialisation.

/// No frames at all.
inline constexpr FrameRate kFrameRate_Zero;

///@{
/// As many frames of video, or samples of audio, in a second as the name says.
inline constexpr FrameRate kFrameRate_Video10 = FrameRate::Create(25401600000);
inline constexpr FrameRate kFrameRate_Video12 = FrameRate::Create(21168000000);
inline constexpr FrameRate kFrameRate_Video12_5 = FrameRate::Create(20321280000);
inline constexpr FrameRate kFrameRate_Video15 = FrameRate::Create(16934400000);
inline constexpr FrameRate kFrameRate_23976 = FrameRate::Create(10594584000); ///< 24000/1001
inline constexpr FrameRate kFrameRate_Film24 = FrameRate::Create(10584000000);
inline constexpr FrameRate kFrameRate_VideoPAL = FrameRate::Create(10160640000); ///< 25
inline constexpr FrameRate kFrameRate_VideoNTSC = FrameRate::Create(8475667200); ///< 30000/1001
inline constexpr FrameRate kFrameRate_Video30 = FrameRate::Create(8467200000);
inline constexpr FrameRate kFrameRate_VideoPAL_HD = FrameRate::Create(5080320000);  ///< 50
inline constexpr FrameRate kFrameRate_VideoNTSC_HD = FrameRate::Create(4237833600); ///< 60000/1001
inline constexpr FrameRate kFrameRate_Video60 = FrameRate::Create(4233600000);
inline constexpr FrameRate kFrameRate_Video100 = FrameRate::Create(2540160000);
inline constexpr FrameRate kFrameRate_Video1000 = FrameRate::Create(254016000);
inline constexpr FrameRate kFrameRate_Audio8000 = FrameRate::Create(31752000);
inline constexpr FrameRate kFrameRate_Audio11025 = FrameRate::Create(23040000);
inline constexpr FrameRate kFrameRate_Audio22050 = FrameRate::Create(11520000);
inline constexpr FrameRate kFrameRate_Audio32000 = FrameRate::Create(7938000);
inline constexpr FrameRate kFrameRate_Audio44100 = FrameRate::Create(5760000);
inline constexpr FrameRate kFrameRate_Audio48000 = FrameRate::Create(5292000);
inline constexpr FrameRate kFrameRate_Audio88200 = FrameRate::Create(2880000);
inline constexpr FrameRate kFrameRate_Audio96000 = FrameRate::Create(2646000);
inline constexpr FrameRate kFrameRate_Audio192000 = FrameRate::Create(1323000);
///@}

} // namespace brindle::time

/// Agrees with `==`.
template <>
struct std::hash<brindle::time::FrameRate> {
    /// Equal values have equal hashes.
    std::size_t operator()(brindle::time::FrameRate const& inRate) const noexcept {
        return brindle::time::impl::HashOf(inRate.GetTicksPerFrame());
    }
};
