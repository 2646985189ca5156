#include "tests/host/Command.h"

namespace brindle::host {

namespace {

using Calc = tests::Command;

TEST_F(Calc, PrintsTheShortestFormOfTheValueAlone) {
    std::pair<char const*, char const*> const rows[] = {{"'1,000+1'", "1001\n"},
                                                        {"-5", "-5\n"},
                                                        {"-- --5", "-5\n"},
                                                        {"0.1+0.2", "0.30000000000000004\n"}};
    for (auto const& [expression, output] : rows) {
        Expect(std::string("calc ") + expression, output);
    }
    for (char const* const words : {"calc", "calc 1 2", "calc -x", "calc --5"}) {
        ExpectWrongUsage(words);
    }
}

} // namespace

} // namespace brindle::host
