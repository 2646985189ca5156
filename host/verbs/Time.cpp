#include "host/verbs/Verbs.h"

#include "host/time/RateText.h"
#include "host/time/TickDecimals.h"

#include <brindle/time/Timecode.h>
#include <brindle/utility/Streams.h>

#include <algorithm>
#include <iomanip>

namespace brindle::host {

namespace {

using namespace time;

struct NamedRate {
    std::string name;
    FrameRate rate;
};

/// The common rates, preceded by the one that was asked for if it is not one of them.
std::vector<NamedRate> RatesToShow(std::optional<NamedRate> const& inAskedFor) {
    std::vector<NamedRate> rates = {
        {"23.976", kFrameRate_23976},       {"24", kFrameRate_Film24},
        {"25", kFrameRate_VideoPAL},        {"29.97", kFrameRate_VideoNTSC},
        {"30", kFrameRate_Video30},         {"50", kFrameRate_VideoPAL_HD},
        {"59.94", kFrameRate_VideoNTSC_HD}, {"60", kFrameRate_Video60},
        {"44100", kFrameRate_Audio44100},   {"48000", kFrameRate_Audio48000},
    };
    bool const isNew =
        inAskedFor && std::none_of(rates.begin(), rates.end(), [&](NamedRate const& inRate) {
            return inRate.rate == inAskedFor->rate;
        });
    if (isNew) {
        rates.insert(rates.begin(), *inAskedFor);
    }
    return rates;
}

char const* Reason(TimecodeFault inFault) {
    switch (inFault) {
    case TimecodeFault::kNone:
        return "";
    case TimecodeFault::kForm:
        return "not of the form HH:MM:SS:FF";
    case TimecodeFault::kMinutes:
        return "minutes over 59";
    case TimecodeFault::kSeconds:
        return "seconds over 59";
    case TimecodeFault::kFrames:
        return "a second has fewer frames";
    case TimecodeFault::kDroppedNumber:
        return "drop-frame counting leaves this number out";
    case TimecodeFault::kNoDropFrame:
        return "';' needs a rate that has drop-frame counting";
    case TimecodeFault::kTooLarge:
        return "too large";
    }
    return "";
}

TickTime TimeFromTimecode(std::string const& inText, NamedRate const& inRate) {
    auto const format = TimecodeFormat::Create(inRate.rate, FrameCounting::kNonDrop);
    if (!format) {
        throw usage_error("there is no timecode at " + inRate.name + " frames a second");
    }
    TimecodeReading const reading = format->ToTime(inText);
    if (reading.fault != TimecodeFault::kNone) {
        throw usage_error("'" + inText + "' is no timecode at " + inRate.name +
                          " frames a second: " + Reason(reading.fault));
    }
    return reading.time;
}

/// Throws `usage_error` for a text that is no time.
TickTime TimeFromText(std::string const& inText, std::optional<NamedRate> const& inRate) {
    bool const isTimecode = inText.find_first_of(":;") != std::string::npos;
    char const unit = inText.empty() ? '\0' : inText.back();
    if ((isTimecode || unit == 'f') && !inRate) {
        throw usage_error("'" + inText + "' needs a --rate");
    }
    if (isTimecode) {
        return TimeFromTimecode(inText, *inRate);
    }
    bool const hasUnit = unit == 'f' || unit == 's' || unit == 't';
    std::string const number = inText.substr(0, inText.size() - hasUnit);
    bool const isPartOfATick = unit == 't' && number.find('.') != std::string::npos;
    auto const ticks = TicksFromDecimal(number, unit == 't'   ? 1
                                                : unit == 'f' ? inRate->rate.GetTicksPerFrame()
                                                              : kTicksPerSecond);
    if (!ticks || isPartOfATick) {
        throw usage_error("'" + inText + "' is no time, or too large");
    }
    return TickTime::TicksToTickTime(*ticks);
}

void PrintLine(std::string const& inLabel, std::string const& inValue) {
    utility::streams::Out << std::left << std::setw(20) << inLabel << ' ' << inValue << '\n';
}

void PrintTimecode(std::string const& inLabel, TickTime const& inTime, FrameRate const& inRate,
                   FrameCounting inCounting) {
    if (auto const format = TimecodeFormat::Create(inRate, inCounting)) {
        PrintLine(inLabel, format->ToText(inTime));
    }
}

void Run(Arguments const& inArguments, Diagnostics&) {
    if (inArguments.Operands().size() != 1) {
        throw usage_error("time needs one VALUE");
    }
    std::optional<NamedRate> askedFor;
    if (inArguments.Has("rate")) {
        std::string const text = inArguments.Text("rate", "");
        askedFor = NamedRate{text, RateFromText(text)};
    }
    TickTime const value = TimeFromText(inArguments.Operands()[0], askedFor);

    PrintLine("ticks", std::to_string(value.GetTicks()));
    PrintLine("seconds", DecimalFromTicks(value.GetTicks(), kTicksPerSecond));
    for (auto const& [name, rate] : RatesToShow(askedFor)) {
        PrintLine("frames@" + name, DecimalFromTicks(value.GetTicks(), rate.GetTicksPerFrame()));
        PrintTimecode("timecode@" + name, value, rate, FrameCounting::kNonDrop);
        PrintTimecode("drop-frame@" + name, value, rate, FrameCounting::kDropFrame);
    }
}

} // namespace

Verb const kTimeVerb = {
    "time",
    "VALUE[f|s|t] [--rate=RATE]",
    "a time in ticks, seconds, frames and timecode",
    "Writes a time in ticks and seconds, and in frames and timecode at the common rates, a\n"
    "label and a value a line. The numbers read back as the same time; a timecode is that of\n"
    "the frame in which the time lies.\n"
    "\n"
    "VALUE is frames at RATE (100f), seconds (1.5s), ticks (254016000000t), or a timecode at\n"
    "RATE (01:00:00:00, 01:00:00;00 for drop-frame). A bare number is seconds. Frames and\n"
    "seconds may have decimals, and go to the nearest tick; all may be negative.\n"
    "\n"
    "  --rate=RATE  frames a second: a number such as 24, 25 or 12.5, a fraction such as\n"
    "               30000/1001, or an NTSC rate as it is spoken of: 23.976, 29.97, 59.94.\n"
    "               The time is printed at this rate, too.\n",
    {"help", "rate="},
    Run,
};

} // namespace brindle::host
