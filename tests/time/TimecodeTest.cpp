#include <brindle/time/Timecode.h>

#include <gtest/gtest.h>

namespace brindle::time {

namespace {

constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();

constexpr FrameCounting kBoth[] = {FrameCounting::kNonDrop, FrameCounting::kDropFrame};

/// A clock of frame numbers that steps by carrying.
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
    struct {
        FrameRate rate;
        int counted, dropped;
        std::int64_t framesOfADay;
    } const rows[] = {{kFrameRate_VideoNTSC, 30, 2, 2'589'408},
                      {kFrameRate_VideoNTSC_HD, 60, 4, 5'178'816},
                      {kFrameRate_VideoNTSC, 30, 0, 2'592'000},
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
            ASSERT_EQ(clock.text, format.ToText(time)) << frame;
            ASSERT_EQ(time, format.ToTime(clock.text).time) << clock.text;
        }
        EXPECT_EQ("24:00:00", clock.text.substr(0, 8));
        EXPECT_EQ(0, clock.fields[3]);
    }
}

TEST(Timecode, IsExactOverTheWholeRangeMirroredBelowZeroAndAsWideAsTheRateNeeds) {
    struct {
        FrameRate rate;
        std::string lastFrame; // of the first second
    } const rows[] = {{kFrameRate_Video10, "09"},
                      {kFrameRate_23976, "23"},
                      {kFrameRate_VideoNTSC, "29"},
                      {kFrameRate_Video100, "99"},
                      {kFrameRate_Video1000, "999"},
                      {kFrameRate_Audio11025, "11024"},
                      {kFrameRate_Audio192000, "191999"},
                      {FrameRate::Create(1), "254015999999"},
                      {FrameRate::Create(2118916800), "119"},
                      {FrameRate(1.0), "00"}};
    for (auto const& [rate, lastFrame] : rows) {
        for (FrameCounting const counting : kBoth) {
            auto const format = TimecodeFormat::Create(rate, counting);
            std::int64_t ticks = kLeast;
            for (int bits = 0; format && bits < 64; ++bits, ticks /= 2) {
                TickTime frame = TickTime::TicksToTickTime(ticks);
                std::string const text = format->ToText(frame);
                frame.AlignToFrame(rate);
                EXPECT_EQ(TimecodeFault::kNone, format->ToTime(text).fault) << text;
                EXPECT_EQ(frame, format->ToTime(text).time) << text;
                EXPECT_TRUE(ticks == kLeast || frame == TickTime() ||
                            "-" + format->ToText(-frame) == text);
            }
        }
        auto const format = TimecodeFormat::Create(rate, FrameCounting::kNonDrop).value();
        EXPECT_EQ("00:00:00:" + lastFrame, format.ToText(TickTime(std::stoll(lastFrame), rate)));
        EXPECT_EQ(0u, format.ToText(TickTime(std::stoll(lastFrame) + 1, rate)).find("00:00:01:0"));
    }
}

TEST(Timecode, RatesWithoutItAreRefused) {
    for (FrameRate const& rate : {kFrameRate_Zero, kFrameRate_Video12_5, FrameRate::Create(0),
                                  FrameRate::Create(-10584000000), FrameRate(29.97)}) {
        EXPECT_FALSE(TimecodeFormat::Create(rate, FrameCounting::kNonDrop));
    }
    for (FrameRate const& rate : {kFrameRate_23976, kFrameRate_Film24, kFrameRate_Video30}) {
        EXPECT_TRUE(TimecodeFormat::Create(rate, FrameCounting::kNonDrop));
        EXPECT_FALSE(TimecodeFormat::Create(rate, FrameCounting::kDropFrame));
    }
}

TEST(Timecode, TextThatIsNoneSaysWhy) {
    auto const ntsc = TimecodeFormat::Create(kFrameRate_VideoNTSC, kBoth[1]).value();
    auto const film = TimecodeFormat::Create(kFrameRate_Film24, kBoth[0]).value();
    for (std::string_view const text :
         {"", "-", "00:00:00", "0:00:00:00", "00:0:00:00", "00:00:00:0", "00:00:00:000",
          "00:000:00:00", "00:00:00.00", "00;00:00;00", "00:00:00:00 ", " 00:00:00:00",
          "+00:00:00:00", "--00:00:00:00", "00:00:0a:00", "00:00:00;:00", "00:60:00:0x"}) {
        EXPECT_EQ(TimecodeFault::kForm, ntsc.ToTime(text).fault) << text;
    }
    using F = TimecodeFault;
    struct {
        TimecodeFormat const& format;
        char const* text;
        TimecodeFault fault;
    } const rows[] = {{ntsc, "00:60:00:00", F::kMinutes},
                      {ntsc, "00:00:60:00", F::kSeconds},
                      {ntsc, "00:00:00:30", F::kFrames},
                      {ntsc, "00:01:00;01", F::kDroppedNumber},
                      {ntsc, "-00:59:00;00", F::kDroppedNumber},
                      {ntsc, "00:01:00:01", F::kNone},
                      {ntsc, "00:10:00;01", F::kNone},
                      {ntsc, "00:01:01;00", F::kNone},
                      {film, "00:00:00;00", F::kNoDropFrame},
                      {film, "10086:10:01:01", F::kNone},
                      {film, "10086:10:01:02", F::kTooLarge},
                      {film, "-10086:10:01:02", F::kTooLarge},
                      {film, "99999999999999999999999:00:00:00", F::kTooLarge},
                      {film, "18446744073709551616:00:00:00", F::kTooLarge},
                      {film, "0000000000000000000000001:00:00:00", F::kNone}};
    for (auto const& row : rows) {
        TimecodeReading const reading = row.format.ToTime(row.text);
        EXPECT_EQ(row.fault, reading.fault) << row.text;
        EXPECT_EQ(row.fault == TimecodeFault::kNone, reading.time != TickTime()) << row.text;
    }
}

} // namespace

} // namespace brindle::time
