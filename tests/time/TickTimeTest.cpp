#include "debug/src/contract/ContractMessage.h"

#include "tests/support/RecordingErrorManager.h"

#include <brindle/time/CheckedSum.h>
#include <brindle/time/Chrono.h>
#include <brindle/time/FrameRateNames.h>
#include <brindle/time/TickTime.h>
#include <brindle/time/TimeStreams.h>
#include <brindle/utility/Streams.h>

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <unordered_set>

namespace brindle::time {

namespace {

constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();

constexpr TickTime Ticks(std::int64_t inTicks) {
    return TickTime::TicksToTickTime(inTicks);
}

/// How many frames 2002 seconds have.
constexpr std::pair<FrameRate, std::int64_t> kRates[] = {
    {kFrameRate_Video10, 20020},        {kFrameRate_Video12, 24024},
    {kFrameRate_Video12_5, 25025},      {kFrameRate_Video15, 30030},
    {kFrameRate_23976, 48000},          {kFrameRate_Film24, 48048},
    {kFrameRate_VideoPAL, 50050},       {kFrameRate_VideoNTSC, 60000},
    {kFrameRate_Video30, 60060},        {kFrameRate_VideoPAL_HD, 100100},
    {kFrameRate_VideoNTSC_HD, 120000},  {kFrameRate_Video60, 120120},
    {kFrameRate_Video100, 200200},      {kFrameRate_Video1000, 2002000},
    {kFrameRate_Audio8000, 16016000},   {kFrameRate_Audio11025, 22072050},
    {kFrameRate_Audio22050, 44144100},  {kFrameRate_Audio32000, 64064000},
    {kFrameRate_Audio44100, 88288200},  {kFrameRate_Audio48000, 96096000},
    {kFrameRate_Audio88200, 176576400}, {kFrameRate_Audio96000, 192192000},
    {kFrameRate_Audio192000, 384384000}};

constexpr bool EveryRateIsExact() {
    for (auto const& [rate, frames] : kRates) {
        TickTime const time(frames, rate);
        FrameRate found;
        time.CalculateFrameRate(static_cast<std::uint64_t>(frames), found);
        if (time != TickTime(2002.0) || found != rate || time.ToFrame64(rate) != frames ||
            (time - Ticks(1)).ToFrame64(rate) != frames - 1 || (-time).ToFrame64(rate) != -frames) {
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

static_assert(TickTime(1) == TickTime(1.0));
static_assert(2 * Ticks(3) == Ticks(6) && 0.5 * Ticks(3) == Ticks(1));
static_assert(Ticks(3) * std::int64_t{5'000'000'000} == Ticks(15'000'000'000));
static_assert(Ticks(15'000'000'000) / 5'000'000'000LL == Ticks(3));
static_assert(CheckedSum(Ticks(kLargest), Ticks(-1)) == Ticks(kLargest - 1));
static_assert(!CheckedSum(Ticks(kLargest), Ticks(1)));
static_assert(!CheckedSum(Ticks(kLeast), Ticks(-1)));

TEST(TickTime, NearestFrameRoundsToTheLaterOfTwo) {
    FrameRate const rate = FrameRate::Create(10);
    constexpr std::pair<std::int64_t, std::int64_t> kCases[] = {
        {0, 0},  {4, 0},   {5, 1},    {14, 1},   {15, 2},  {-4, 0},
        {-5, 0}, {-6, -1}, {-10, -1}, {-15, -1}, {-16, -2}};
    for (auto const& [ticks, frame] : kCases) {
        EXPECT_EQ(Ticks(ticks).NearestFrame(rate), frame) << ticks;
    }
    EXPECT_EQ(Ticks(kLeast).NearestFrame(FrameRate::Create(1)), kLeast);
    EXPECT_EQ(Ticks(kLeast).NearestFrame(rate), kLeast / 10 - 1);
    EXPECT_EQ(Ticks(1).NearestFrame(kFrameRate_Zero), 0);
}

TEST(TickTime, GoesToTheStandardLibraryAndBack) {
    using namespace std::chrono;
    EXPECT_EQ(ToChrono<nanoseconds>(TickTime(100 * 3600, FrameRate(1.0))), hours(100));
    EXPECT_EQ(FromChrono(hours(100)), TickTime(100 * 3600, FrameRate(1.0)));
    EXPECT_EQ(ToChrono<milliseconds>(Ticks(-kTicksPerSecond / 2 - 1)), milliseconds(-500));
    EXPECT_EQ(FromChrono(nanoseconds(-125)), Ticks(-31752));
    EXPECT_EQ(FromChrono(duration<double>(0.5)), TickTime(0.5));
    EXPECT_EQ(ToChrono<TickDuration>(Ticks(kLeast)).count(), kLeast);
    EXPECT_EQ(FromChrono(hours::max()), Ticks(kLargest)) << "the nearest time";
    EXPECT_EQ(ToChrono<nanoseconds>(Ticks(kLargest)).count(), 36310201077313144);
}

TEST(FrameRate, IsFoundByItsName) {
    for (auto const& [name, rate] : NamedFrameRates()) {
        EXPECT_EQ(FrameRate::FromName(name), rate) << name;
    }
    EXPECT_EQ(FrameRate::FromName("23.98"), kFrameRate_23976);
    EXPECT_EQ(FrameRate::FromName("30000/1001"), kFrameRate_VideoNTSC);
    for (char const* const name : {"", "fast", "0", "-25", "25 ", "1/0", "/", "29.5", "1e9"}) {
        EXPECT_EQ(FrameRate::FromName(name), std::nullopt) << name;
    }
}

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

TEST(TickTime, AndRatesAreKeysAndInsertedIntoEveryStream) {
    std::unordered_set<std::size_t> lowBits;
    for (std::int64_t frame = 0; frame < 1000; ++frame) {
        lowBits.insert(std::hash<TickTime>()(TickTime(frame, kFrameRate_Film24)) % 4096);
    }
    EXPECT_GT(lowBits.size(), 800u) << "frames share powers of two";
    EXPECT_EQ(std::hash<FrameRate>()(FrameRate(25.0)), std::hash<FrameRate>()(kFrameRate_VideoPAL));
    std::ostringstream narrow;
    narrow << kFrameRate_VideoPAL << ' ' << kFrameRate_Zero;
    EXPECT_EQ(narrow.str(), "25 0");
    oUTF16StringStream wide;
    wide << TickTime(1.5) << kFrameRate_Video12_5;
    EXPECT_EQ(wide.str(), u"1.512.5"_utf16);
    oUTF8StringStream bytes;
    bytes << TickTime(1.5) << kFrameRate_Video12_5;
    EXPECT_EQ(bytes.str(), "1.512.5"_utf8);
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
