#include "debug/src/contract/ContractMessage.h"

#include "tests/support/RecordingErrorManager.h"

#include <brindle/time/TickTime.h>

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

namespace brindle::time {

namespace {

constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();

constexpr TickTime Ticks(std::int64_t inTicks) {
    return TickTime::TicksToTickTime(inTicks);
}

constexpr FrameRate kRates[] = {
    kFrameRate_Video10,    kFrameRate_Video12,     kFrameRate_Video12_5,    kFrameRate_Video15,
    kFrameRate_23976,      kFrameRate_Film24,      kFrameRate_VideoPAL,     kFrameRate_VideoNTSC,
    kFrameRate_Video30,    kFrameRate_VideoPAL_HD, kFrameRate_VideoNTSC_HD, kFrameRate_Video60,
    kFrameRate_Video100,   kFrameRate_Video1000,   kFrameRate_Audio8000,    kFrameRate_Audio11025,
    kFrameRate_Audio22050, kFrameRate_Audio32000,  kFrameRate_Audio44100,   kFrameRate_Audio48000,
    kFrameRate_Audio88200, kFrameRate_Audio96000,  kFrameRate_Audio192000};
// The frames of 1000 seconds, of 1001 seconds for the NTSC rates.
constexpr std::int64_t kFrames[] = {10000,    12000,    12500,    15000,    24000,    24000,
                                    25000,    30000,    30000,    50000,    60000,    60000,
                                    100000,   1000000,  8000000,  11025000, 22050000, 32000000,
                                    44100000, 48000000, 88200000, 96000000, 192000000};

constexpr bool EveryRateIsExact() {
    for (std::size_t i = 0; i < std::size(kRates); ++i) {
        FrameRate const rate = kRates[i];
        TickTime const time(kFrames[i], rate);
        FrameRate found;
        time.CalculateFrameRate(static_cast<std::uint64_t>(kFrames[i]), found);
        bool const isNtsc = rate == kFrameRate_23976 || rate == kFrameRate_VideoNTSC ||
                            rate == kFrameRate_VideoNTSC_HD;
        if (time != TickTime(isNtsc ? 1001.0 : 1000.0) || found != rate ||
            (time - Ticks(1)).ToFrame64(rate) != kFrames[i] - 1 ||
            time.ToFrame64(rate) != kFrames[i] || (-time).ToFrame64(rate) != -kFrames[i]) {
            return false;
        }
    }
    return true;
}

constexpr FrameRate RateOf(TickTime const& inTime, std::uint64_t inCount) {
    FrameRate rate = kFrameRate_Film24;
    inTime.CalculateFrameRate(inCount, rate);
    return rate;
}

constexpr std::int64_t Aligned(std::int64_t inTicks, FrameRate const& inRate) {
    TickTime time = Ticks(inTicks);
    time.AlignToFrame(inRate);
    return time.GetTicks();
}

static_assert(EveryRateIsExact());

static_assert(FrameRate(29.97).GetTicksPerFrame() == 8475675675);
static_assert(kFrameRate_Zero < kFrameRate_Video10);
static_assert(!(kFrameRate_Video10 <= kFrameRate_Zero));

static_assert(TickTime(-400000.0) == kTickTime_Invalid);
static_assert(kTickTime_Invalid < kTickTime_Min);
static_assert(TickTime(4294967301, kFrameRate_Audio8000).ToFrame32(kFrameRate_Audio8000) == 5);
static_assert(Ticks(kLargest).ToFrame64(kFrameRate_Zero) == 0);
static_assert(Ticks(kLeast).ToFrame64(FrameRate::Create(-1)) == kLeast);
static_assert(Aligned(-10584000001, kFrameRate_Film24) == -10584000000);
static_assert(RateOf(Ticks(kLeast), ~std::uint64_t{0}).GetTicksPerFrame() == kLeast);

// A factor and a divisor keep their sign and their width.
static_assert(Ticks(10) * 4294967295u == Ticks(42949672950));
static_assert(Ticks(10) * -1 == Ticks(-10));
static_assert(Ticks(42949672950) / 4294967295u == Ticks(10));
static_assert(Ticks(-7) / 2u == Ticks(-3));
static_assert(Ticks(-7) * 0.5 == Ticks(-3));
static_assert(Ticks(7) / -2.0 == Ticks(-3));

static_assert(Ticks(kLargest) + Ticks(1) == Ticks(kLeast));
static_assert(-Ticks(kLeast) == Ticks(kLeast));
static_assert(Ticks(kLeast) / -1 == Ticks(kLeast));
static_assert(TickTime(-1.5).Abs() == TickTime(1.5));

TEST(TickTime, DoublesOutOfRangeBecomeTheLeastInteger) {
    double volatile zero = 0.0; // so that the compiler cannot fold what follows
    for (double const seconds : {1 / zero, -1 / zero, zero / zero, 36310201.1, 1e300, -1e300}) {
        EXPECT_EQ(TickTime(seconds).GetTicks(), kLeast) << seconds;
        EXPECT_EQ((Ticks(kTicksPerSecond) * seconds).GetTicks(), kLeast) << seconds;
    }
    EXPECT_EQ(TickTime(std::nan("")).GetTicks(), kLeast) << "also where the compiler folds it";
}

TEST(TickTime, IsWrittenAsTheStreamWritesItsSeconds) {
    std::ostringstream text;
    text << TickTime(1.5) << ' ' << std::fixed << TickTime(-100.25);
    EXPECT_EQ(text.str(), "1.5 -100.250000");
}

TEST(TickTime, ViolatedContractsReportAndGoOnWithoutATrap) {
    tests::RecordingErrorManager manager;
    debug::SetContractMessageHook(
        [](char const* inText) { EXPECT_EQ(std::string(inText).find("[time/src/TickTime-"), 0u); });
    auto const expect = [&](std::size_t inReports, std::int64_t inTicks, TickTime const& inResult) {
        EXPECT_EQ(inResult.GetTicks(), inTicks);
        EXPECT_EQ(std::exchange(manager.codes, {}), std::vector<std::int32_t>(inReports, 25));
    };
    TickTime time = Ticks(3);
    expect(2, 3, time / 0);
    expect(2, kLeast, time / 0.0);
    expect(1, 3, time /= 0);
    time.AlignToFrame(FrameRate::Create(0));
    expect(1, 3, time);
    time.AddFrames(1, kFrameRate_Zero);
    expect(0, kLeast + 2, time);
    time.AlignToFrame(kFrameRate_Zero);
    expect(1, 0, time);
    expect(1, -kLargest, TickTime(-1, kFrameRate_Zero));
    expect(1, kLeast, TickTime(Ticks(1) / TickTime()));
    debug::SetContractMessageHook(nullptr);
}

} // namespace

} // namespace brindle::time
