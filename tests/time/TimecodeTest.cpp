#include <brindle/time/Timecode.h>

#include <gtest/gtest.h>

namespace brindle::time {
namespace {

constexpr FrameCounting kBoth[] = {FrameCounting::kNonDrop, FrameCounting::kDropFrame};

/// Counts timecode as a mileage counter does: a wheel that goes back to 0 moves the next one.
struct Odometer {
    void Step() {
        for (std::size_t i = 4; i-- > 0;) {
            fields[i] = (fields[i] + 1) % limits[i];
            text[3 * i] = static_cast<char>('0' + fields[i] / 10);
            text[3 * i + 1] = static_cast<char>('0' + fields[i] % 10);
            if (fields[i] != 0) {
                return;
            }
        }
    }

    std::string text;
    int limits[4], fields[4];
};

TEST(Timecode, EveryFrameOfADayGoesThereAndBack) {
    std::tuple<FrameRate, int, int, std::int64_t> const rows[] = {
        {kFrameRate_VideoNTSC, 30, 2, 2'589'408},
        {kFrameRate_VideoNTSC_HD, 60, 4, 5'178'816},
        {kFrameRate_23976, 24, 0, 2'073'600}};
    for (auto const& [rate, counted, dropped, framesOfADay] : rows) {
        auto const format = TimecodeFormat::Create(rate, kBoth[dropped != 0]).value();
        Odometer clock{dropped != 0 ? "00:00:00;00" : "00:00:00:00", {100, 60, 60, counted}, {}};
        for (std::int64_t frame = 0; frame < framesOfADay; ++frame, clock.Step()) {
            bool const skips = clock.fields[1] % 10 != 0 && clock.fields[2] == 0;
            while (skips && clock.fields[3] < dropped) {
                clock.Step();
            }
            TickTime const time(frame, rate);
            ASSERT_EQ(format.ToText(time), clock.text) << frame;
            ASSERT_EQ(format.ToTime(clock.text).time, time) << clock.text;
            ASSERT_EQ(format.ToText(-time), (frame != 0 ? "-" : "") + clock.text);
        }
        EXPECT_EQ(clock.text.substr(0, 8), "24:00:00");
        EXPECT_EQ(clock.fields[3], 0);
    }
}

TEST(Timecode, FrameDigitsAreAsWideAsTheRateNeeds) {
    // The last frame of the first second.
    std::pair<FrameRate, std::string> const rows[] = {{kFrameRate_Video100, "99"},
                                                      {FrameRate::Create(1), "254015999999"},
                                                      {FrameRate(1.0), "00"}};
    for (auto const& [rate, lastFrame] : rows) {
        auto const format = TimecodeFormat::Create(rate, FrameCounting::kNonDrop).value();
        EXPECT_EQ(format.ToText(TickTime(std::stoll(lastFrame), rate)), "00:00:00:" + lastFrame);
        EXPECT_EQ(format.ToText(TickTime(std::stoll(lastFrame) + 1, rate)),
                  "00:00:01:" + std::string(lastFrame.size(), '0'));
    }
}

TEST(Timecode, IsRefusedForRatesThatHaveNone) {
    for (FrameRate const& rate : {kFrameRate_Zero, kFrameRate_Video12_5,
                                  FrameRate::Create(-10584000000), FrameRate(29.97)}) {
        EXPECT_FALSE(TimecodeFormat::Create(rate, FrameCounting::kNonDrop));
    }
    EXPECT_FALSE(TimecodeFormat::Create(kFrameRate_23976, FrameCounting::kDropFrame));
}

TEST(Timecode, TellsWhyATextIsNotOne) {
    auto const ntsc = TimecodeFormat::Create(kFrameRate_VideoNTSC, kBoth[1]).value();
    for (std::string_view const text :
         {"", "-", "00:00:00", "0:00:00:00", "00:0:00:00", "00:00:00:0", "00:00:00:000",
          "00:000:00:00", "00:00:00.00", "00;00:00;00", "00:00:00:00 ", "--00:00:00:00",
          "00:60:00:0x"}) {
        EXPECT_EQ(ntsc.ToTime(text).fault, TimecodeFault::kForm) << text;
    }
    using F = TimecodeFault;
    std::pair<char const*, F> const rows[] = {{"00:60:00:00", F::kMinutes},
                                              {"00:00:60:00", F::kSeconds},
                                              {"00:00:00:30", F::kFrames},
                                              {"00:01:00;01", F::kDroppedNumber},
                                              {"10076:05:27:04", F::kNone},
                                              {"10076:05:27:05", F::kTooLarge},
                                              {"-10076:05:27:05", F::kTooLarge},
                                              {"-10076:05:27:04", F::kNone},
                                              {"18446744073709551616:00:00:00", F::kTooLarge},
                                              {"0000000000000000000000001:00:00:00", F::kNone}};
    for (auto const& [text, fault] : rows) {
        EXPECT_EQ(ntsc.ToTime(text).fault, fault) << text;
        EXPECT_EQ(ntsc.ToTime(text).time != TickTime(), fault == F::kNone) << text;
    }
    auto const film = TimecodeFormat::Create(kFrameRate_Film24, kBoth[0]).value();
    auto const ticks = TimecodeFormat::Create(FrameRate::Create(1), kBoth[0]).value();
    EXPECT_EQ(ticks.ToTime("20174:00:00:000000000000").fault, F::kTooLarge) << "over 64 bits";
    EXPECT_EQ(film.ToTime("00:00:00;00").fault, F::kNoDropFrame);
}

TEST(Timecode, IsReadAsPeopleTypeIt) {
    auto const ntsc = TimecodeFormat::Create(kFrameRate_VideoNTSC, kBoth[1]).value();
    using F = TimecodeFault;
    struct Case {
        char const* text;
        std::int64_t frames;
        F fault = F::kNone;
    } const cases[] = {
        {"1:00", 30},
        {"100", 30},
        {"+25", 25},
        {" -100 ", -30},
        {"90", 90},
        {"1.2.3", 60 * 30 + 2 * 30 + 3 - 2},
        {"1;00;02", 1800},
        {"90:00", 90 * 30 - 2},
        {"1000000", 107892}, // an hour in drop-frame
        {"123:00:00:00", 123 * 107892},
        {"1:70", 0, F::kFrames},
        {"1:60:00", 0, F::kSeconds},
        {"1:00:00", 0, F::kDroppedNumber},
        {"", 0, F::kForm},
        {"+", 0, F::kForm},
        {":1", 0, F::kForm},
        {"1::0", 0, F::kForm},
        {"1:", 0, F::kForm},
        {"1:2:3:4:5", 0, F::kForm},
        {"1 0", 0, F::kForm},
        {"99999999999999999999:00", 0, F::kTooLarge},
        {"9999999999999999999:00:00:00", 0, F::kTooLarge},
    };
    for (auto const& each : cases) {
        auto const reading = ntsc.ToTime(each.text, FrameCounting::kDropFrame);
        EXPECT_EQ(reading.fault, each.fault) << each.text;
        EXPECT_EQ(reading.time.ToFrame64(kFrameRate_VideoNTSC), each.frames) << each.text;
    }
    EXPECT_EQ(ntsc.ToTime("1:00:00", FrameCounting::kNonDrop).fault, F::kNone);
    auto const audio = TimecodeFormat::Create(kFrameRate_Audio48000, kBoth[0]).value();
    EXPECT_EQ(audio.ToTime("100001", kBoth[0]).time, TickTime(48001, kFrameRate_Audio48000));
}

TEST(Timecode, IsCalculatedWith) {
    auto const pal = TimecodeFormat::Create(kFrameRate_VideoPAL, kBoth[0]).value();
    using F = TimecodeFault;
    struct Case {
        char const* text;
        std::int64_t frames;
        F fault = F::kNone;
    } const cases[] = {
        {"01:00:00:00+25*60", 90000 + 1500},
        {" 1:00 - -(2 + 3)*2 ", 25 + 10},
        {"-1:00/2", -12},
        {"2*(1:00+1)-7/2", 52 - 3},
        {"((12))", 12},
        {"", 0, F::kForm},
        {"1:00*1:00", 0, F::kForm},
        {"4/1:00", 0, F::kForm},
        {"1/0", 0, F::kForm},
        {"1+", 0, F::kForm},
        {"(1", 0, F::kForm},
        {"1)", 0, F::kForm},
        {"1 2", 0, F::kForm},
        {"2.5", 0, F::kForm},
        {"~1", 0, F::kForm},
        {"1:70", 0, F::kFrames},
        {"1;00", 0, F::kNoDropFrame},
        {"9223372036854775807+1", 0, F::kTooLarge},
        {"(0-9223372036854775807-1)/-1", 0, F::kTooLarge},
        {"9223372036854775807", 0, F::kTooLarge},
    };
    for (auto const& each : cases) {
        auto const reading = pal.Evaluate(each.text);
        EXPECT_EQ(reading.fault, each.fault) << each.text;
        EXPECT_EQ(reading.time.ToFrame64(kFrameRate_VideoPAL), each.frames) << each.text;
    }
    std::string const deep(1'000'000, '(');
    EXPECT_EQ(pal.Evaluate(deep + "1" + std::string(deep.size(), ')')).fault, F::kNone);
    EXPECT_EQ(pal.Evaluate(std::string(1'000'000, '-') + "1").time,
              TickTime(1, kFrameRate_VideoPAL));
}

} // namespace

} // namespace brindle::time
