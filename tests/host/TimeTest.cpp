#include "tests/host/Command.h"

#include <map>
#include <sstream>

namespace brindle::host {

namespace {

class Time : public tests::Command {
protected:
    /// The printed values by their labels.
    std::map<std::string, std::string> Lines(std::string const& inWords) {
        Outcome const outcome = Run("time " + inWords);
        EXPECT_EQ(outcome.status, 0) << inWords << '\n' << outcome.errors;
        std::map<std::string, std::string> lines;
        std::istringstream text(outcome.output);
        for (std::string label, value; text >> label >> value;) {
            EXPECT_TRUE(lines.emplace(label, value).second) << label;
        }
        return lines;
    }
};

TEST_F(Time, ConvertsToExactTicksSecondsFramesAndTimecode) {
    auto const hour = Lines("'01:00:00;00' --rate=29.97");
    EXPECT_EQ(hour.at("ticks"), "914456685542400") << "107892 frames of 1001/30000 s";
    EXPECT_EQ(hour.at("drop-frame@59.94"), "01:00:00;00");
    auto const part = Lines("-1.5 --rate=12.5");
    EXPECT_EQ(part.at("frames@12.5"), "-18.75");
    EXPECT_EQ(part.at("timecode@25"), "-00:00:01:12");
}

TEST_F(Time, NumbersReadBackAsTheSameTime) {
    for (std::string const ticks :
         {"0", "-1", "254016000001", "9223372036854775807", "-9223372036854775808"}) {
        auto const lines = Lines(ticks + "t --rate=30000/1001");
        EXPECT_EQ(lines.at("ticks"), ticks);
        EXPECT_EQ(Lines(lines.at("seconds") + "s").at("ticks"), ticks);
        for (std::string const rate : {"23.976", "29.97", "44100"}) {
            std::string const frames = lines.at("frames@" + rate) + "f --rate=" + rate;
            EXPECT_EQ(Lines(frames).at("ticks"), ticks) << frames;
        }
    }
    EXPECT_EQ(Lines(".000000000002").at("ticks"), "1") << "to the nearest tick";
}

TEST_F(Time, RatesAreExactFractionsOrNtscRates) {
    std::istringstream rows("24 10584000000 12.5 20321280000 29.97 8475667200 23.976 10594584000 "
                            "30000/1001 8475667200 119.88 2118916800 "
                            "23.98 10594584000 59.94 4237833600 254016000000 1");
    for (std::string rate, ticks; rows >> rate >> ticks;) {
        EXPECT_EQ(Lines("1f --rate=" + rate).at("ticks"), ticks) << rate;
    }
}

TEST_F(Time, WrongUsageSaysSo) {
    std::istringstream all(
        "|1 2|''|s|.|1x|--rate|1e3|1.5t|1.2.3|5f|00:00:00:00|9223372036854775808t|"
        "36310201.08|1 --rate=0|1 --rate=1/0|1 --rate=|1 --rate=.|"
        "1 --rate=-24|1 --rate=29.5|1 --rate=29.97/1|1 --rate=508032000000|"
        "'00:01:00;00' --rate=29.97|00:00:00:00 --rate=12.5");
    for (std::string words; std::getline(all, words, '|');) {
        ExpectWrongUsage("time " + words);
    }
}

} // namespace

} // namespace brindle::host
