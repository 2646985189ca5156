#pragma once

#include <brindle/Export.h>
#include <brindle/time/TickTime.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brindle::time {

/// How the frames of a rate are numbered.
enum class FrameCounting : std::uint8_t {
    /// Every number is used, so that at an NTSC rate timecode falls behind the clock.
    kNonDrop,
    /// The first numbers of every minute but each tenth are left out, two for each 30 frames of a
    /// second, so that timecode at an NTSC rate keeps up with the clock. No frame is left out.
    kDropFrame
};

/// Why a text is no timecode.
enum class TimecodeFault : std::uint8_t {
    kNone,
    kForm,          ///< not written as `TimecodeFormat` tells
    kMinutes,       ///< over 59
    kSeconds,       ///< over 59
    kFrames,        ///< not below the frames of a second
    kDroppedNumber, ///< a number that drop-frame counting leaves out
    kNoDropFrame,   ///< ";", at a rate without drop-frame counting
    kTooLarge       ///< does not fit into a `TickTime`
};

/// The outcome of reading a timecode: the start of its frame, or why there is none.
struct TimecodeReading {
    TimecodeFault fault = TimecodeFault::kNone;
    /// 0 if there is a fault.
    TickTime time;
};

/// The SMPTE timecode of one rate: which text stands for which frame.
///
/// The text is ASCII, `HH:MM:SS:FF`, with ";" before the frames if they are counted in drop-frame
/// and "-" in front of a negative time, which mirrors the positive one. Hours have two digits or as
/// many more as the value needs; frames have two, or as many more as the rate needs (three for 1000
/// frames a second, five for 48000, where they are samples).
///
/// Timecode counts whole frames in whole seconds. A rate has one if its frames divide the second,
/// and if they divide 1001 seconds into a multiple of 1000: then it counts as the next whole rate,
/// 23.976 at 24. 12.5 has none.
///
/// A plain value; any thread may use it.
class BRN_API TimecodeFormat {
public:
    /// Nothing if the rate has no timecode, or, for drop-frame, is not 29.97, 59.94 or another NTSC
    /// rate of a multiple of 30.
    static std::optional<TimecodeFormat> Create(FrameRate const& inFrameRate,
                                                FrameCounting inCounting) noexcept;

    /// The timecode of the frame in which the time lies, as `TickTime::ToFrame64` tells it.
    std::string ToText(TickTime const& inTime) const;

    /// The reverse: exact for every text that `ToText` gives. The separator before the frames says
    /// how they are counted, whatever counting this format writes.
    TimecodeReading ToTime(std::string_view inText) const noexcept;

private:
    TimecodeFormat() noexcept = default;

    std::uint64_t FrameOf(std::uint64_t inLabel) const noexcept;
    std::uint64_t LabelOf(std::uint64_t inFrame) const noexcept;

    FrameRate mFrameRate;
    std::uint64_t mFramesPerSecond = 0; // as they are counted
    std::uint64_t mDropped = 0; // numbers left out in a minute, 0 if the rate has no drop-frame
    std::uint32_t mFrameDigits = 2;
    FrameCounting mCounting = FrameCounting::kNonDrop;
};

} // namespace brindle::time
