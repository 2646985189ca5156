#include "EditList.h"

#include <brindle/utility/DecodeText.h>
#include <brindle/utility/ParseNumbers.h>

#include <iomanip>
#include <sstream>

namespace edlconform {

/// Reads lines. Functions return false if the line is to be left out.
struct Reader {
    bool ReadLine(UTF16String const& inText) {
        auto const words = Words(inText);
        UTF16String const first = words.empty() ? u" "_utf16 : UpperCase(words[0]);
        bool const isSpeed = first == u"M2", isCounting = first == u"FCM:";
        if (ParseInteger(first.substr(0, 1))) {
            notes = nullptr;
            return (words.size() == 8 || words.size() == 9) && ReadEvent(words);
        }
        if (!words.empty() && !isSpeed && !isCounting && notes != nullptr) {
            notes->push_back(Trim(inText));
        }
        bool const isDrop = UpperCase(inText).find(u"NON"_utf16) == UTF16String::npos;
        return isSpeed ? words.size() == 4 && ReadSpeed(words) : !isCounting || list.Count(isDrop);
    }

    /// Number, reel, track; "C", or another transition with its length in frames; four times.
    bool ReadEvent(std::vector<UTF16String> const& inWords) {
        auto const times = inWords.end() - 4;
        auto const number = ParseInteger(inWords[0]).value_or(-1);
        auto const frames = inWords.size() == 9 ? ParseInteger(inWords[4]).value_or(-1) : 0;
        TickTime in, out, recordIn, recordOut;
        Event event;
        bool const isGood = number >= 0 && number < 1000000 && frames >= 0 && frames < 1000 &&
                            ReadTime(times[0], in) && ReadTime(times[1], out) &&
                            ReadTime(times[2], recordIn) && ReadTime(times[3], recordOut);
        if (isGood) {
            Fields(event) = std::tuple(line, number, inWords[1], UpperCase(inWords[2]), inWords[3],
                                       TickTime(frames, list.rate), in, out, recordIn, recordOut,
                                       1.0, std::vector<UTF16String>());
            notes = &list.events.emplace_back(event).notes;
        }
        return isGood;
    }

    /// "M2", a reel, the frames per second at which its last event plays, and where it begins.
    bool ReadSpeed(std::vector<UTF16String> const& inWords) {
        auto const speed = ParseNumber(inWords[2]);
        auto const event = std::find_if(list.events.rbegin(), list.events.rend(),
                                        [&](Event const& e) { return e.reel == inWords[1]; });
        bool const isGood = speed && std::abs(*speed) < 1000 && event != list.events.rend();
        if (isGood) {
            event->speed = *speed / std::ceil(list.rate.GetValue());
        }
        return isGood;
    }

    bool ReadTime(UTF16String const& inWord, TickTime& outTime) const {
        std::string text = ToStd(inWord);
        // bridge: a reading that is told how to count, and wants all four groups
        text.replace(std::min(text.find_last_of(":;"), text.size()), 1,
                     list.isDropFrame ? ";" : ":");
        // end of bridge
        auto const reading = list.Format().ToTime(text);
        outTime = reading.time;
        if (reading.fault == TimecodeFault::kDroppedNumber) {
            list.Say(line, "$$$/edl/Dropped=has ^1, which drop-frame counting leaves out.", text);
        }
        return reading.fault == TimecodeFault::kNone && outTime >= kTickTime_Zero &&
               outTime <= kTickTime_Max;
    }

    EditList& list;
    std::vector<UTF16String>* notes = &list.head; ///< of what was read last; null if left out
    std::uint32_t line = 0;
};

void ReadText(EditList& ioList, std::vector<std::uint8_t> const& inBytes) {
    TextReport report;
    UTF16String const text = DecodeText(inBytes.data(), inBytes.size(), &report);
    if (report.replacedCount > 0) {
        Report("$$$/edl/Replaced=^1: ^2 ^2{one=part is|other=parts are} no text, and replaced.",
               ioList.name, report.replacedCount);
    }
    Reader reader{ioList};
    for (UTF16String const& line : Lines(text)) {
        ++reader.line;
        if (line.size() > 4096 || !reader.ReadLine(line)) {
            ioList.Say(reader.line, "$$$/edl/LeftOut=is left out: '^1'", line.substr(0, 80));
        }
    }
}

std::string TextOf(EditList const& inList) {
    auto const format = inList.Format();
    std::ostringstream text;
    std::ostream_iterator<UTF16String> const lines(text, "\n");
    std::copy(inList.head.begin(), inList.head.end(), lines);
    text << "FCM: " << (inList.isDropFrame ? "" : "NON-") << "DROP FRAME\n" << std::left;
    for (Event const& event : inList.events) {
        auto const frames = static_cast<double>(event.length.ToFrame64(inList.rate));
        text << NumberToString(event.number, 3, 0, {}) << "  " << std::setw(8) << event.reel << ' '
             << std::setw(5) << event.track << ' ' << std::setw(4) << event.transition << ' '
             << (frames == 0 ? u"   "_utf16 : NumberToString(frames, 3, 0, {})) << ' '
             << format.ToText(event.sourceIn) << ' ' << format.ToText(event.sourceOut) << ' '
             << format.ToText(event.recordIn) << ' ' << format.ToText(event.recordOut) << '\n';
        if (event.speed != 1) {
            auto const speed = event.speed * std::ceil(inList.rate.GetValue());
            text << "M2   " << std::setw(8) << event.reel << ' '
                 << NumberToString(speed, 3, 1, kNumberFormat_NoInternationalize) << "  "
                 << format.ToText(event.sourceIn) << '\n';
        }
        std::copy(event.notes.begin(), event.notes.end(), lines);
    }
    return text.str();
}

} // namespace edlconform
