#pragma once

// An edit decision list, and what this program does with one. Times are exact media time, whatever
// the frame rate is, and become whole frames in `Conformed`, which makes what is written.

#include <brindle/config/ErrorCollector.h>
#include <brindle/config/Report.h>
#include <brindle/config/Text.h>
#include <brindle/filesupport/FileContent.h>
#include <brindle/filesupport/FilesystemPath.h>
#include <brindle/proplist/MediaValues.h>
#include <brindle/time/Timecode.h>
#include <brindle/utility/Numbers.h>
#include <brindle/utility/StringUtils.h>
#include <brindle/utility/TextOperations.h>

#include <algorithm>
#include <cmath>
#include <map>

namespace edlconform {

using namespace brindle;
using namespace brindle::config;
using namespace brindle::filesupport;
using namespace brindle::time;
using namespace brindle::utility;

/// A line of the list. A transition has two of the same number.
struct Event {
    std::uint32_t line = 0, number = 0;
    UTF16String reel, track, transition;
    TickTime length, sourceIn, sourceOut, recordIn, recordOut; ///< `length` is the transition's
    double speed = 1;                                          ///< 1 is as it was shot
    std::vector<UTF16String> notes;
};

/// The fields of a constant or another event.
template <typename AnyEvent>
auto Fields(AnyEvent& e) {
    return std::tie(e.line, e.number, e.reel, e.track, e.transition, e.length, e.sourceIn,
                    e.sourceOut, e.recordIn, e.recordOut, e.speed, e.notes);
}

struct EditList {
    std::string name; ///< as the user wrote it
    FrameRate rate;   ///< has timecode
    bool isDropFrame = false;
    std::vector<UTF16String> head; ///< the lines before the first event
    std::vector<Event> events;

    TimecodeFormat Format() const {
        auto const counting = isDropFrame ? FrameCounting::kDropFrame : FrameCounting::kNonDrop;
        return TimecodeFormat::Create(rate, counting).value();
    }
    /// Counts non-drop, and returns false, if drop-frame is wanted but the rate has none.
    bool Count(bool inInDropFrame) {
        isDropFrame = inInDropFrame && TimecodeFormat::Create(rate, FrameCounting::kDropFrame);
        return isDropFrame == inInDropFrame;
    }
    template <typename... Values>
    void Say(std::uint32_t inLine, char const* inSentence, Values const&... inValues) const {
        Report("$$$/edl/Line=^1: line ^2 ^3", name, inLine, Text(inSentence, {inValues...}));
    }
};

// TextForm.cpp

/// Adds what is written in these bytes. What cannot be read is reported and left out.
void ReadText(EditList& ioList, std::vector<std::uint8_t> const& inBytes);
std::string TextOf(EditList const& inList);

// Cache.cpp

/// Reads the file of a list, whose rate is known. The cache is used if it was made of this version
/// of the file at this rate, and otherwise made, unless something about the list was reported. A
/// null pointer means none. `inErrors` collects this thread's errors.
void Load(EditList& ioList, File const* inCache, ErrorCollector const& inErrors);

// Conform.cpp

/// By reel and time if that is wanted, and otherwise by time, which is that of the record or
/// source.
void Sort(EditList& ioList, bool inIsByReel, bool inIsBySource);
/// Reports what no editor means. The list is sorted by record time. If `inReels` is not empty, it
/// has all reels that exist.
void Check(EditList const& inList, std::vector<UTF16String> const& inReels);
/// The list in whole frames of its rate. Reports each event of which that moves a time.
EditList Conformed(EditList inList);

} // namespace edlconform
