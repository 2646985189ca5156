#pragma once

#include <brindle/filesupport/FilesystemPath.h>
#include <brindle/proplist/PropList.h>
#include <brindle/time/FrameRateNames.h>
#include <brindle/time/Timecode.h>

namespace offload {

using namespace brindle;

constexpr char kNoTimecode[] = "$$$/offload/NoTimecode=The start is not a timecode.";

/// What is copied where, and the timecode at which its material starts: from the preferences
/// "source", "destination", "start" and "counting", which is a rate such as "29.97" or "29.97 DF".
struct Order {
    explicit Order(proplist::PropList const& inPreferences)
        : from(PlaceOf(inPreferences.Get("source", ""))),
          to(PlaceOf(inPreferences.Get("destination", ""))) {
        // The frames are counted in drop-frame if there is more than the rate's name.
        auto const counting = inPreferences.Get("counting", "25");
        auto const name = counting.substr(0, counting.find(' '));
        rate = time::FrameRate::FromName(name).value_or(time::kFrameRate_VideoPAL);
        format = time::TimecodeFormat::Create(rate, time::FrameCounting(name != counting));
        format = format.value_or(*time::TimecodeFormat::Create(time::kFrameRate_VideoPAL, {}));
        start = format->Evaluate(inPreferences.Get("start", "0"));
    }

    bool HasStart() const { return start.fault == time::TimecodeFault::kNone; }
    std::string Timecode() const { return format->ToText(start.time); }

    std::filesystem::path from, to;
    time::FrameRate rate;
    std::optional<time::TimecodeFormat> format;
    time::TimecodeReading start;

private:
    /// The directory that a user typed, without links and relative parts.
    static std::filesystem::path PlaceOf(std::filesystem::path const& inPath) {
        std::error_code error;
        auto const path = std::filesystem::weakly_canonical(inPath, error);
        return std::filesystem::absolute(error ? inPath : path, error);
    }
};

} // namespace offload
