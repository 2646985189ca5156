#include <brindle/time/Timecode.h>

#include <gtest/gtest.h>

namespace brindle::time {

namespace {

constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();

/// A clock of frame numbers that steps by carrying, and skips the numbers that are left out.
class Odometer {
public:
    Odometer(int inFramesPerSecond, int inDropped) : mDropped(inDropped) {
        mLimits[3] = inFramesPerSecond;
    }

    std::string_view Text() const { return {mText, sizeof mText - 1}; }

    void Step() {
        CountOne();
        bool const isOther = mFields[1] % 10 != 0 && mFields[2] == 0 && mFields[3] == 0;
        for (int i = 0; isOther && i < mDropped; ++i) {
            CountOne();
        }
    }

    void UseSemicolon() { mText[8] = ';'; }

private:
    void CountOne() {
        bool isCarried = true;
        for (int i = 3; isCarried && i >= 0; --i) {
            mFields[i] = (mFields[i] + 1) % mLimits[i];
            mText[3 * i] = static_cast<char>('0' + mFields[i] / 10);
            mText[3 * i + 1] = static_cast<char>('0' + mFields[i] % 10);
            isCarried = mFields[i] == 0;
        }
    }

    int mFields[4] = {}, mLimits[4] = {100, 60, 60, 0};
    int const mDropped;
    char mText[12] = "00:00:00:00";
};

TimecodeFormat FormatOf(FrameRate const& inRate, FrameCounting inCounting) {
    auto const format = TimecodeFormat::Create(inRate, inCounting);
    EXPECT_TRUE(format) << inRate.GetTicksPerFrame();
    return *format;
}

TEST(Timecode, EveryFrameOfADayGoesThereAndBack) {
    struct {
        FrameRate rate;
        int counted, dropped;
        std::int64_t framesOfADay;
    } const rows[] = {
        {kFrameRate_VideoNTSC, 30, 2, 2'589'408},
        {kFrameRate_VideoNTSC_HD, 60, 4, 5'178'816},
        {kFrameRate_VideoNTSC, 30, 0, 2'592'000},
        {kFrameRate_23976, 24, 0, 2'073'600},
    };
    for (auto const& row : rows) {
        bool const isDropFrame = row.dropped != 0;
        TimecodeFormat const format =
            FormatOf(row.rate, isDropFrame ? FrameCounting::kDropFrame : FrameCounting::kNonDrop);
        Odometer expected(row.counted, row.dropped);
        if (isDropFrame) {
            expected.UseSemicolon();
        }
        for (std::int64_t frame = 0; frame < row.framesOfADay; ++frame, expected.Step()) {
            TickTime const time(frame, row.rate);
            ASSERT_EQ(expected.Text(), format.ToText(time)) << frame;
            ASSERT_EQ(time, format.ToTime(expected.Text()).time) << expected.Text();
        }
        EXPECT_EQ(isDropFrame ? "24:00:00;00" : "24:00:00:00", expected.Text());
    }
}

TEST(Timecode, IsExactAtEveryRateOverTheWholeRangeAndMirroredBelowZero) {
    FrameRate const rates[] = {
        kFrameRate_Video10,
        kFrameRate_23976,
        kFrameRate_VideoNTSC,
        kFrameRate_VideoNTSC_HD,
        kFrameRate_Video1000,
        kFrameRate_Audio11025,
        kFrameRate_Audio192000,
        FrameRate::Create(1),
        FrameRate::Create(kTicksPerSecond),
        FrameRate::Create(2118916800), // 120000/1001
    };
    for (FrameRate const& rate : rates) {
        for (FrameCounting const counting : {FrameCounting::kNonDrop, FrameCounting::kDropFrame}) {
            auto const format = TimecodeFormat::Create(rate, counting);
            if (!format) {
                continue;
            }
            std::int64_t ticks = kLeast;
            for (int bits = 0; bits < 64; ++bits, ticks /= 2) {
                TickTime frame = TickTime::TicksToTickTime(ticks);
                std::string const text = format->ToText(frame);
                frame.AlignToFrame(rate);
                TimecodeReading const reading = format->ToTime(text);
                EXPECT_EQ(TimecodeFault::kNone, reading.fault) << text;
                EXPECT_EQ(frame, reading.time) << text;
                if (ticks != kLeast && frame != TickTime()) {
                    EXPECT_EQ("-" + format->ToText(-frame), text);
                }
            }
        }
    }
}

TEST(Timecode, FrameDigitsAreAsWideAsTheRateNeeds) {
    struct {
        FrameRate rate;
        char const* lastFrame;
    } const rows[] = {
        {kFrameRate_Video10, "00:00:00:09"},       {kFrameRate_Video100, "00:00:00:99"},
        {kFrameRate_Video1000, "00:00:00:999"},    {kFrameRate_Audio8000, "00:00:00:7999"},
        {kFrameRate_Audio48000, "00:00:00:47999"}, {kFrameRate_Audio192000, "00:00:00:191999"},
    };
    for (auto const& row : rows) {
        TimecodeFormat const format = FormatOf(row.rate, FrameCounting::kNonDrop);
        EXPECT_EQ(row.lastFrame, format.ToText(TickTime(1.0) - TickTime(1, row.rate)));
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
    TimecodeFormat const ntsc = FormatOf(kFrameRate_VideoNTSC, FrameCounting::kNonDrop);
    TimecodeFormat const film = FormatOf(kFrameRate_Film24, FrameCounting::kNonDrop);
    for (std::string_view const text :
         {"", "-", "00:00:00", "0:00:00:00", "00:0:00:00", "00:00:00:0", "00:00:00:000",
          "00:000:00:00", "00:00:00.00", "00;00:00;00", "00:00:00:00 ", " 00:00:00:00",
          "+00:00:00:00", "--00:00:00:00", "00:00:0a:00", "00:00:00;:00", "00:60:00:0x"}) {
        EXPECT_EQ(TimecodeFault::kForm, ntsc.ToTime(text).fault) << text;
    }
    struct {
        TimecodeFormat const& format;
        char const* text;
        TimecodeFault fault;
    } const rows[] = {
        {ntsc, "00:60:00:00", TimecodeFault::kMinutes},
        {ntsc, "00:00:60:00", TimecodeFault::kSeconds},
        {ntsc, "00:00:00:30", TimecodeFault::kFrames},
        {ntsc, "00:01:00;01", TimecodeFault::kDroppedNumber},
        {ntsc, "-00:59:00;00", TimecodeFault::kDroppedNumber},
        {ntsc, "00:01:00:01", TimecodeFault::kNone},
        {ntsc, "00:10:00;01", TimecodeFault::kNone},
        {ntsc, "00:01:01;00", TimecodeFault::kNone},
        {film, "00:00:00;00", TimecodeFault::kNoDropFrame},
        {film, "10086:10:01:01", TimecodeFault::kNone},
        {film, "10086:10:01:02", TimecodeFault::kTooLarge},
        {film, "-10086:10:01:02", TimecodeFault::kTooLarge},
        {film, "99999999999999999999999:00:00:00", TimecodeFault::kTooLarge},
        {film, "18446744073709551616:00:00:00", TimecodeFault::kTooLarge},
        {film, "0000000000000000000000001:00:00:00", TimecodeFault::kNone},
    };
    for (auto const& row : rows) {
        TimecodeReading const reading = row.format.ToTime(row.text);
        EXPECT_EQ(row.fault, reading.fault) << row.text;
        EXPECT_EQ(row.fault == TimecodeFault::kNone, reading.time != TickTime()) << row.text;
    }
}

} // namespace

} // namespace brindle::time
