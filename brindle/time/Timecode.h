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
    /// Every number is used. At an NTSC rate the timecode falls behind the clock.
    kNonDrop,
    /// The first numbers of each minute except every tenth are left out, two for each 30 frames per
    /// second, so that the timecode of an NTSC rate keeps up with the clock. No frame is left out.
    kDropFrame
};

/// Why a text is not a timecode.
enum class TimecodeFault : std::uint8_t {
    kNone,          ///< it is a timecode
    kForm,          ///< not in the form that `TimecodeFormat` describes
    kMinutes,       ///< over 59
    kSeconds,       ///< over 59
    kFrames,        ///< not below the number of frames in a second
    kDroppedNumber, ///< a number that drop-frame counting leaves out
    kNoDropFrame,   ///< ";", at a rate without drop-frame counting
    kTooLarge       ///< does not fit into a `TickTime`
};

/// The result of reading a timecode: the start of its frame, or why there is none.
struct TimecodeReading {
    TimecodeFault fault = TimecodeFault::kNone; ///< `kNone` if the text was a timecode
    /// 0 if there is a fault.
    TickTime time;
};

/// Compares all fields.
constexpr bool operator==(TimecodeReading const& inLHS, TimecodeReading const& inRHS) noexcept {
    return inLHS.fault == inRHS.fault && inLHS.time == inRHS.time;
}

constexpr bool operator!=(TimecodeReading const& inLHS, TimecodeReading const& inRHS) noexcept {
    return !(inLHS == inRHS);
}

/// The SMPTE timecode of one rate, to and from text:
///
///     auto const format = TimecodeFormat::Create(kFrameRate_VideoNTSC, FrameCounting::kDropFrame);
///     std::string const text = format->ToText(TickTime(60.0)); // "00:00:59;28"
///
/// The text is ASCII, `HH:MM:SS:FF`, with ";" before the frames if they are counted in drop-frame.
/// A negative time is the positive one with "-" in front. Hours have two digits, or more if the
/// value needs more. Frames have two, or more if the rate needs more: three for 1000 frames per
/// second, five for 48000, where they are samples.
///
/// A rate has a timecode if a second is a whole number of its frames. So has an NTSC rate, of which
/// 1001 seconds are a multiple of 1000 frames: it is counted as the next whole rate, 23.976 as 24.
/// 12.5 has none.
///
/// A plain value that is compared and not ordered; any thread may use it. `std::format` and its
/// kind know no timecode.
class BRN_API TimecodeFormat {
public:
    /// Empty if the rate has no timecode. Drop-frame timecode exists for 29.97, 59.94 and the other
    /// NTSC rates that are counted as a multiple of 30.
    [[nodiscard]] static std::optional<TimecodeFormat> Create(FrameRate const& inFrameRate,
                                                              FrameCounting inCounting) noexcept;

    /// The timecode of the frame that `TickTime::ToFrame64` gives for the time.
    [[nodiscard]] std::string ToText(TickTime const& inTime) const;

    /// The reverse, which is exact for every text that `ToText` gives. The separator before the
    /// frames tells how they are counted, whichever counting this format writes.
    [[nodiscard]] TimecodeReading ToTime(std::string_view inText) const noexcept;

    /// Reads what people type: hours, minutes, seconds and frames, of which the first ones may be
    /// left out, between ":", ";", "." or ","; or digits alone, of which the last ones are frames,
    /// two for seconds stand before them, and so on. "1:00" and "100" are a second, "+25" is 25
    /// frames. A sign and blanks may stand in front, blanks also behind. The first group may be any
    /// number. `inCounting` tells how the frames are counted, unless there is a ";".
    [[nodiscard]] TimecodeReading ToTime(std::string_view inText,
                                         FrameCounting inCounting) const noexcept;

    /// Calculates with timecodes and whole numbers, which are frames, by "+", "-", "*", "/" and
    /// parentheses: "01:00:00:00+25*60". Timecodes are read as people type them, with ":" or ";"
    /// between their parts, and counted as this format counts. A product has at most one timecode,
    /// and nothing is divided by one; divisions are truncated toward zero. Faults: those of the
    /// timecodes, `kForm` for anything else that is no calculation, division by zero among it, and
    /// `kTooLarge`. Takes time and memory linear in the length of the text.
    [[nodiscard]] TimecodeReading Evaluate(std::string_view inText) const;

    /// Whether both write every time alike.
    friend bool operator==(TimecodeFormat const& inLHS, TimecodeFormat const& inRHS) noexcept {
        return inLHS.mFrameRate == inRHS.mFrameRate && inLHS.mCounting == inRHS.mCounting;
    }
    friend bool operator!=(TimecodeFormat const& inLHS, TimecodeFormat const& inRHS) noexcept {
        return !(inLHS == inRHS);
    }

private:
    TimecodeFormat() noexcept = default;

    TimecodeReading TimeOf(std::uint64_t inLabel, bool inIsDropFrame,
                           bool inIsNegative) const noexcept;
    std::uint64_t FrameOf(std::uint64_t inLabel) const noexcept;
    std::uint64_t LabelOf(std::uint64_t inFrame) const noexcept;

    FrameRate mFrameRate;
    std::uint64_t mFramesPerSecond = 0; // as they are counted
    std::uint64_t mDropped = 0; // numbers left out per minute; 0 if the rate has no drop-frame
    std::uint32_t mFrameDigits = 2;
    FrameCounting mCounting = FrameCounting::kNonDrop;
};

} // namespace brindle::time
