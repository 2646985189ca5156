#include "tests/host/Command.h"

namespace brindle::host {

namespace {

class Calc : public tests::Command {
protected:
    Calc() { ::setenv("LC_ALL", "C", 1); }
};

TEST_F(Calc, PrintsTheShortestFormOfTheValueAlone) {
    struct {
        char const *words, *output;
    } const rows[] = {
        {"'1,000+1'", "1001\n"},
        {"-5", "-5\n"},
        {"'-(2+3)'", "-5\n"},
        {"-- --5", "-5\n"},
        {"0.1+0.2", "0.30000000000000004\n"},
        {"'2^9^9^9^9'", "inf\n"},
        {"''", "0\n"},
    };
    for (auto const& row : rows) {
        Outcome const outcome = Run(std::string("calc ") + row.words);
        EXPECT_EQ(row.output, outcome.output) << row.words;
        EXPECT_EQ(0, outcome.status) << row.words;
    }
    for (char const* const words : {"calc", "calc 1 2", "calc -x", "calc --5"}) {
        EXPECT_EQ(2, Run(words).status) << words;
    }
}

} // namespace

} // namespace brindle::host
