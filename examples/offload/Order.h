#pragma once

#include <brindle/filesupport/FilesystemPath.h>
#include <brindle/proplist/PropList.h>
#include <brindle/time/Timecode.h>

namespace offload {

using namespace brindle;

/// What is copied where, and the timecode at which its material starts: from the preferences
/// "source", "destination", "start" and "counting", which is a rate such as "29.97" or "29.97 DF".
struct Order {
    explicit Order(proplist::PropList const& inPreferences)
        : source(PlaceOf(inPreferences.Get("source", ""))),
          destination(PlaceOf(inPreferences.Get("destination", ""))) {
        auto const counting = inPreferences.Get("counting", "25");
        auto const name = counting.substr(0, counting.find(' '));
        bool const isDropFrame = name != counting;
        rate = time::FrameRate::FromName(name).value_or(time::kFrameRate_VideoPAL);
        format = time::TimecodeFormat::Create(rate, isDropFrame ? time::FrameCounting::kDropFrame
                                                                : time::FrameCounting::kNonDrop);
        start = format->Evaluate(inPreferences.Get("start", "0"));
    }

    /// The directory that a user typed, without links and relative parts.
    static filesupport::Dir PlaceOf(std::string const& inText) {
        std::error_code error;
        auto const path = std::filesystem::absolute(inText, error);
        auto const canonical = std::filesystem::weakly_canonical(path, error);
        return filesupport::DirFromPath(error ? path : canonical);
    }

    filesupport::Dir source;
    filesupport::Dir destination;
    time::FrameRate rate;
    std::optional<time::TimecodeFormat> format; // never empty
    time::TimecodeReading start;
};

} // namespace offload
