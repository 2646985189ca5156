// At any rate, a text that is read as a time must be written again as that time, and the text of
// every time must be read as the start of its frame.

#include <brindle/time/Timecode.h>

#include <cstdlib>
#include <cstring>

using namespace brindle::time;

namespace {

void RequireSame(TimecodeReading const& inReading, TickTime const& inTime) {
    if (inReading.fault != TimecodeFault::kNone || inReading.time != inTime) {
        std::abort();
    }
}

} // namespace

/// The input is the ticks of a frame, or 0 for drop-frame at 59.94, and a text, whose first bytes
/// are also a time.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* inData, std::size_t inSize) {
    std::int64_t numbers[2] = {};
    if (inSize < sizeof numbers) {
        return 0;
    }
    std::memcpy(numbers, inData, sizeof numbers);
    bool const isDropFrame = numbers[0] == 0;
    FrameRate const rate = isDropFrame ? kFrameRate_VideoNTSC_HD : FrameRate::Create(numbers[0]);
    auto const format = TimecodeFormat::Create(rate, isDropFrame ? FrameCounting::kDropFrame
                                                                 : FrameCounting::kNonDrop);
    if (!format) {
        return 0;
    }
    TickTime time = TickTime::TicksToTickTime(numbers[1]);
    std::string const text = format->ToText(time);
    time.AlignToFrame(rate);
    RequireSame(format->ToTime(text), time);

    TimecodeReading const reading =
        format->ToTime({reinterpret_cast<char const*>(inData) + 8, inSize - 8});
    if (reading.fault == TimecodeFault::kNone) {
        RequireSame(format->ToTime(format->ToText(reading.time)), reading.time);
    }
    return 0;
}
