#include "EditList.h"

namespace edlconform {

/// "B" is picture and sound, "AA/V" the picture and two channels of sound.
std::vector<UTF16String> ChannelsOf(UTF16String inTrack) {
    ReplaceAllStringInString(inTrack, u"AA"_utf16, u"A A2"_utf16);
    ReplaceAllStringInString(inTrack, u"B"_utf16, u"V A"_utf16);
    ReplaceAllStringInString(inTrack, u"/"_utf16, u" "_utf16);
    return Words(inTrack);
}

/// `ioLasts` has the event that ends last on each channel.
void CheckPlace(EditList const& inList, Event const& inEvent,
                std::map<UTF16String, Event const*>& ioLasts) {
    for (UTF16String const& channel : ChannelsOf(inEvent.track)) {
        Event const*& last = ioLasts.emplace(channel, &inEvent).first->second;
        TickTime const gap = last == &inEvent ? TickTime() : inEvent.recordIn - last->recordOut;
        if (gap < kTickTime_Zero) {
            inList.Say(inEvent.line, "$$$/edl/Overlap=overlaps line ^1 by ^2.", last->line,
                       inList.Format().ToText(-gap));
        } else if (gap > kTickTime_Zero && channel == u"V") { // sound may pause
            inList.Say(inEvent.line, "$$$/edl/Gap=comes after a gap of ^1.",
                       inList.Format().ToText(gap));
        }
        last = last->recordOut < inEvent.recordOut ? &inEvent : last;
    }
}

void Sort(EditList& ioList, bool inIsByReel, bool inIsBySource) {
    std::multimap<std::pair<UTF16String, TickTime>, Event> sorted;
    for (std::size_t i = 0; i < ioList.events.size(); ++i) {
        // The two lines of a transition stay together, where the second one belongs.
        bool const isPair =
            i + 1 < ioList.events.size() && ioList.events[i + 1].number == ioList.events[i].number;
        Event const& key = ioList.events[isPair ? i + 1 : i];
        sorted.emplace(std::pair(inIsByReel ? key.reel : UTF16String(),
                                 inIsBySource ? key.sourceIn : key.recordIn),
                       ioList.events[i]);
    }
    ioList.events.clear();
    for (auto& [key, event] : sorted) {
        ioList.events.push_back(std::move(event));
    }
}

void Check(EditList const& inList, std::vector<UTF16String> const& inReels) {
    std::map<UTF16String, Event const*> lasts;
    std::uint32_t previous = 0;
    for (Event const& event : inList.events) {
        if (event.line < previous) {
            inList.Say(event.line, "$$$/edl/Order=should follow line ^1.", previous);
        }
        if (!inReels.empty() && std::count(inReels.begin(), inReels.end(), event.reel) == 0) {
            inList.Say(event.line, "$$$/edl/Reel=has the unknown reel '^1'.", event.reel);
        }
        TickTime const played = event.sourceOut - event.sourceIn;
        TickTime const recorded = event.recordOut - event.recordIn;
        // A list gives speeds, and so what they make of durations, only roughly.
        TickTime const wanted = event.speed == 1 ? recorded : recorded * std::abs(event.speed);
        if (std::min(played, recorded) < kTickTime_Zero) {
            inList.Say(event.line, "$$$/edl/Backward=ends before it begins.");
        } else if (event.speed != 0 &&
                   TickTime(played - wanted).Abs() > TickTime(event.speed != 1, inList.rate)) {
            inList.Say(event.line, "$$$/edl/Times=records ^1 of the source in ^2.",
                       inList.Format().ToText(played), inList.Format().ToText(recorded));
        }
        if (event.recordIn < event.recordOut) { // not what a transition begins with
            CheckPlace(inList, event, lasts);
        }
        previous = event.line;
    }
}

EditList Conformed(EditList inList) {
    auto const nearest = [&](TickTime inTime) {
        return TickTime(inTime.NearestFrame(inList.rate), inList.rate);
    };
    for (Event& event : inList.events) {
        Event const exact = event;
        event.length = nearest(exact.length);
        event.recordIn = nearest(exact.recordIn);
        event.recordOut = nearest(exact.recordOut);
        event.sourceIn = nearest(exact.sourceIn);
        // What had equal durations has them again.
        bool const isInStep = exact.sourceOut - exact.sourceIn == exact.recordOut - exact.recordIn;
        event.sourceOut =
            isInStep ? event.sourceIn + event.recordOut - event.recordIn : nearest(exact.sourceOut);
        if (Fields(event) != Fields(exact)) {
            inList.Say(event.line, "$$$/edl/OffGrid=has times between frames, which are moved.");
        }
    }
    return inList;
}

} // namespace edlconform
