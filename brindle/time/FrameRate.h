#pragma once

#include <brindle/time/Ticks.h>

namespace brindle::time {

/// A frame rate, told by its period: the exact number of ticks in one frame, so that 29.97 is no
/// approximation but 30000/1001.
///
/// A plain value; independent objects may be used on different threads. No operation reports.
class FrameRate {
public:
    /// `kFrameRate_Zero`.
    constexpr FrameRate() noexcept = default;

    /// From frames per second: the period in ticks is truncated toward zero. 0.0 is
    /// `kFrameRate_Zero`; a rate whose period is out of range, or not a number, has the least
    /// 64-bit integer for its period. The NTSC rates have constants: 29.97 is not one of them.
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

    /// Frames per second; 0.0 for `kFrameRate_Zero`.
    constexpr double GetValue() const noexcept {
        return mTicksPerFrame == kZeroPeriod
                   ? 0.0
                   : static_cast<double>(kTicksPerSecond) / static_cast<double>(mTicksPerFrame);
    }

    constexpr std::int64_t GetTicksPerFrame() const noexcept { return mTicksPerFrame; }

    constexpr bool operator==(FrameRate const& inRHS) const noexcept {
        return mTicksPerFrame == inRHS.mTicksPerFrame;
    }
    constexpr bool operator!=(FrameRate const& inRHS) const noexcept {
        return mTicksPerFrame != inRHS.mTicksPerFrame;
    }
    // The order is that of rates: the slower has the longer period. `kFrameRate_Zero` is below
    // every rate with a positive period.
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

// Constants of the compiler rather than of the library's data: a division by one of them becomes a
// multiplication, and a client's statics may use them in any order of loading.

/// No rate: nothing moves.
inline constexpr FrameRate kFrameRate_Zero;

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

} // namespace brindle::time
