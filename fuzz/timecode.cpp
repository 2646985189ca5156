// Timecode: whatever text is read as a time is written as that time, and every time reads back as
// the start of its frame, at any rate.

#include <brindle/time/Timecode.h>

#include <cstdlib>
#include <cstring>
#include <iterator>

using namespace brindle::time;

namespace {

constexpr FrameRate kRates[] = {kFrameRate_VideoNTSC, kFrameRate_VideoNTSC_HD,
                                kFrameRate_23976,     kFrameRate_Film24,
                                kFrameRate_Video1000, kFrameRate_Audio44100};

void RequireSame(TimecodeReading const& inReading, TickTime const& inTime) {
    if (inReading.fault != TimecodeFault::kNone || inReading.time != inTime) {
        std::abort();
    }
}

} // namespace

/// A byte that chooses the rate and the counting, the ticks of a frame for rates off the table, and
/// a text whose first bytes are a time too.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* inData, std::size_t inSize) {
    std::int64_t numbers[2] = {};
    if (inSize < 1 + sizeof numbers) {
        return 0;
    }
    std::memcpy(numbers, inData + 1, sizeof numbers);
    std::size_t const choice = inData[0] / 2;
    FrameRate const rate =
        choice < std::size(kRates) ? kRates[choice] : FrameRate::Create(numbers[0]);
    auto const format = TimecodeFormat::Create(
        rate, inData[0] % 2 == 0 ? FrameCounting::kNonDrop : FrameCounting::kDropFrame);
    if (!format) {
        return 0;
    }
    TickTime time = TickTime::TicksToTickTime(numbers[1]);
    std::string const text = format->ToText(time);
    time.AlignToFrame(rate);
    RequireSame(format->ToTime(text), time);

    std::size_t const textStart = 1 + sizeof numbers[0];
    TimecodeReading const reading =
        format->ToTime({reinterpret_cast<char const*>(inData) + textStart, inSize - textStart});
    if (reading.fault == TimecodeFault::kNone) {
        RequireSame(format->ToTime(format->ToText(reading.time)), reading.time);
    }
    return 0;
}
