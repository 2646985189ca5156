#include "debug/src/ContractMessage.h"

#include <brindle/config/ErrorManager.h>
#include <brindle/time/TickTime.h>

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>

namespace brindle::time {

namespace {

constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();

constexpr TickTime Ticks(std::int64_t inTicks) {
    return TickTime::TicksToTickTime(inTicks);
}

constexpr bool EveryRateIsExact() {
    struct {
        FrameRate rate;
        std::int64_t frames, seconds;
    } constexpr kRates[] = {
        {kFrameRate_Video10, 10, 1},
        {kFrameRate_Video12, 12, 1},
        {kFrameRate_Video12_5, 25, 2},
        {kFrameRate_Video15, 15, 1},
        {kFrameRate_23976, 24000, 1001},
        {kFrameRate_Film24, 24, 1},
        {kFrameRate_VideoPAL, 25, 1},
        {kFrameRate_VideoNTSC, 30000, 1001},
        {kFrameRate_Video30, 30, 1},
        {kFrameRate_VideoPAL_HD, 50, 1},
        {kFrameRate_VideoNTSC_HD, 60000, 1001},
        {kFrameRate_Video60, 60, 1},
        {kFrameRate_Video100, 100, 1},
        {kFrameRate_Video1000, 1000, 1},
        {kFrameRate_Audio8000, 8000, 1},
        {kFrameRate_Audio11025, 11025, 1},
        {kFrameRate_Audio22050, 22050, 1},
        {kFrameRate_Audio32000, 32000, 1},
        {kFrameRate_Audio44100, 44100, 1},
        {kFrameRate_Audio48000, 48000, 1},
        {kFrameRate_Audio88200, 88200, 1},
        {kFrameRate_Audio96000, 96000, 1},
        {kFrameRate_Audio192000, 192000, 1},
    };
    for (auto const& [rate, frames, seconds] : kRates) {
        TickTime const time(frames, rate);
        FrameRate found;
        time.CalculateFrameRate(static_cast<std::uint64_t>(frames), found);
        if (time != TickTime(static_cast<double>(seconds)) || found != rate ||
            time.ToFrame64(rate) != frames || (time - Ticks(1)).ToFrame64(rate) != frames - 1 ||
            (-time).ToFrame64(rate) != -frames || (Ticks(1) - time).ToFrame64(rate) != 1 - frames) {
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

static_assert(sizeof(TickTime) == 8 && sizeof(FrameRate) == 8);
static_assert(EveryRateIsExact());

static_assert(FrameRate(24.0) == kFrameRate_Film24 && FrameRate() == FrameRate(0.0));
static_assert(FrameRate(-0.0) == kFrameRate_Zero && kFrameRate_Zero.GetValue() == 0.0);
static_assert(FrameRate(29.97).GetTicksPerFrame() == 8475675675);
static_assert(kFrameRate_VideoNTSC.GetValue() == 29.97002997002997);
static_assert(kFrameRate_Film24 > kFrameRate_23976 && kFrameRate_23976 <= kFrameRate_Film24);
static_assert(kFrameRate_Zero < kFrameRate_Video10 && !(kFrameRate_Video10 <= kFrameRate_Zero));
static_assert(kFrameRate_Film24 >= kFrameRate_Film24 && !(kFrameRate_Film24 > kFrameRate_Film24));

static_assert(TickTime(360000.0) == kTickTime_Max && -kTickTime_Max == kTickTime_Min);
static_assert(TickTime(-400000.0) == kTickTime_Invalid && kTickTime_Invalid < kTickTime_Min);
static_assert(TickTime(4294967301, kFrameRate_Audio8000).ToFrame32(kFrameRate_Audio8000) == 5);
static_assert(TickTime(1.0).ToFrame64(kFrameRate_Zero) == 0);
static_assert(Ticks(kLargest).ToFrame64(kFrameRate_Zero) == 0);
static_assert(TickTime(1.0).ToFrame64(FrameRate::Create(0)) == 0);
static_assert(Ticks(7).ToFrame64(FrameRate::Create(-2)) == -3);
static_assert(Ticks(kLeast).ToFrame64(FrameRate::Create(-1)) == kLeast);
static_assert(Aligned(10584000001, kFrameRate_Film24) == 10584000000);
static_assert(Aligned(-10584000001, kFrameRate_Film24) == -10584000000);
static_assert(Aligned(kLeast, FrameRate::Create(-1)) == kLeast);
static_assert(RateOf(TickTime(), 25) == kFrameRate_Zero);
static_assert(RateOf(TickTime(1.0), 0) == kFrameRate_Zero);
static_assert(RateOf(Ticks(kLeast), ~std::uint64_t{0}).GetTicksPerFrame() == kLeast);

// A factor and a divisor keep their sign and their width.
static_assert(TickTime(7.0) / 2 == TickTime(3.5) && TickTime(7.0) / -2 == TickTime(-3.5));
static_assert(Ticks(10) * 4294967295u == Ticks(42949672950) && Ticks(10) * -1 == Ticks(-10));
static_assert(Ticks(42949672950) / 4294967295u == Ticks(10) && Ticks(-7) / 2u == Ticks(-3));
static_assert(Ticks(-7) * 0.5 == Ticks(-3) && Ticks(7) / -2.0 == Ticks(-3));
static_assert(TickTime(1.0) / TickTime(0.5) == 2.0);

static_assert(Ticks(kLargest) + Ticks(1) == Ticks(kLeast) && -Ticks(kLeast) == Ticks(kLeast));
static_assert(Ticks(kLeast) - Ticks(1) == Ticks(kLargest) && Ticks(kLargest) * 2 == Ticks(-2));
static_assert(Ticks(kLeast) / -1 == Ticks(kLeast) && TickTime(-1.5).Abs() == TickTime(1.5));

TEST(TickTime, DoublesOutOfRangeBecomeTheLeastInteger) {
    double volatile zero = 0.0; // keeps the arithmetic out of the compiler's hands
    for (double const seconds : {1 / zero, -1 / zero, zero / zero, 36310201.1, 1e300, -1e300}) {
        EXPECT_EQ(kLeast, TickTime(seconds).GetTicks()) << seconds;
        EXPECT_EQ(kLeast, (Ticks(kTicksPerSecond) * seconds).GetTicks()) << seconds;
    }
    EXPECT_EQ(9223372036854774784, (Ticks(1) * std::nextafter(0x1p63, 0)).GetTicks());
    EXPECT_EQ(kLeast, TickTime(std::nan("")).GetTicks()) << "also where the compiler folds it";
    static_assert(TickTime(1e200) == Ticks(kLeast) && TickTime(-0x1p63) == Ticks(kLeast));
    EXPECT_EQ(kLeast, FrameRate(1e-300).GetTicksPerFrame());
    EXPECT_EQ(kLeast, FrameRate(zero / zero).GetTicksPerFrame());
    EXPECT_EQ(0, FrameRate(-1 / zero).GetTicksPerFrame());
}

TEST(TickTime, IsWrittenAsTheStreamWritesItsSeconds) {
    std::ostringstream times, doubles;
    times << TickTime(1.5) << std::fixed << TickTime(-100.25);
    doubles << 1.5 << std::fixed << -100.25;
    EXPECT_EQ(doubles.str(), times.str());
}

/// Counts errors and lets every operation go on.
class CountingManager : public config::ErrorManager {
public:
    CountingManager() { Set(this); }
    ~CountingManager() override { Set(nullptr); }

    void ThrowErrorImpl(config::ErrorLevel, char const*, std::uint32_t, std::int32_t inCode, bool,
                        config::ReplacementValue const&, config::ReplacementValue const&,
                        config::ReplacementValue const&, config::ReplacementValue const&) override {
        EXPECT_EQ(25, inCode);
        ++count;
    }

    int count = 0;
};

std::string S_shown;

TEST(TickTime, ViolatedContractsReportAndGoOnWithoutATrap) {
    CountingManager manager;
    debug::SetContractMessageHook([](char const* inText) { S_shown += inText; });
    TickTime const time(3.0);
    TickTime const zero;
    FrameRate const none = kFrameRate_Zero, noTicks = FrameRate::Create(0);
    struct {
        int reports;
        std::int64_t ticks;
        TickTime (*operation)(TickTime, FrameRate);
        FrameRate rate;
    } const rows[] = {
        {2, time.GetTicks(), [](TickTime t, FrameRate) { return t / 0; }, none},
        {2, time.GetTicks(), [](TickTime t, FrameRate) { return t / 0u; }, none},
        {2, kLeast, [](TickTime t, FrameRate) { return t / 0.0; }, none},
        {1, time.GetTicks(), [](TickTime t, FrameRate) { return t /= 0; }, none},
        {1, time.GetTicks(), [](TickTime t, FrameRate) { return t /= 0u; }, none},
        {1, kLeast, [](TickTime t, FrameRate) { return t /= 0.0; }, none},
        {1, -kLargest, [](TickTime, FrameRate r) { return TickTime(-1, r); }, none},
        {1, 0, [](TickTime t, FrameRate r) { return t.AlignToFrame(r), t; }, none},
        {1, time.GetTicks(), [](TickTime t, FrameRate r) { return t.AlignToFrame(r), t; }, noTicks},
        {0, kLargest - 1,
         [](TickTime, FrameRate r) {
             TickTime t = Ticks(-1);
             t.AddFrames(1, r);
             return t;
         },
         none},
    };
    for (auto const& row : rows) {
        manager.count = 0;
        S_shown.clear();
        EXPECT_EQ(row.ticks, row.operation(time, row.rate).GetTicks()) << &row - rows;
        EXPECT_EQ(row.reports, manager.count) << &row - rows;
        EXPECT_EQ(row.reports != 0, S_shown.rfind("[time/src/TickTime-", 0) == 0) << S_shown;
    }
    manager.count = 0;
    EXPECT_TRUE(std::isinf(time / zero));
    EXPECT_EQ(1, manager.count);
    debug::SetContractMessageHook(nullptr);
}

} // namespace

} // namespace brindle::time
