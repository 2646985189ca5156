#include "tests/host/Command.h"

namespace brindle::host {

namespace {

using CommandLine = tests::Command;

TEST_F(CommandLine, WrongUsagePointsToTheHelpThatExplainsIt) {
    std::pair<char const*, char const*> const rows[] = {
        {"", "no verb\nTry 'brindle --help'."},
        {"nonsense", "unknown verb 'nonsense'\nTry 'brindle --help'."},
        {"--nonsense", "unknown verb '--nonsense'\nTry 'brindle --help'."},
        {"seal", "seal needs one DIR\nTry 'brindle seal --help'."},
        {"calc --=", "unknown option '--'\nTry 'brindle calc --help'."},
        {"sum -x", "unknown option '-x'\nTry 'brindle sum --help'."},
        {"sum --help=x", "--help takes no value\nTry 'brindle sum --help'."},
        {"sum --jobs", "--jobs needs a value\nTry 'brindle sum --help'."}};
    for (auto const& [words, message] : rows) {
        Expect(words, "", 2, std::string("brindle: ") + message + '\n');
    }
}

TEST_F(CommandLine, AnOptionTakesItsValueFromTheNextWordToo) {
    Fill("a", "123456789");
    std::string const line = "cbf43926  9  a\n";
    Expect("sum --jobs 2 a", line);
    Expect("sum a --jobs=2", line);
    Expect("sum --jobs 2 -- a", line);
    ExpectWrongUsage("sum --jobs -- a");
}

TEST_F(CommandLine, HelpAndVersionAreResults) {
    for (char const* const words : {"--help", "sum --help", "--version"}) {
        Outcome const outcome = Run(words);
        EXPECT_EQ(outcome.status, 0) << words;
        EXPECT_NE(outcome.output, "") << words;
        EXPECT_EQ(outcome.errors, "") << words;
    }
    EXPECT_EQ(Run("--version >/dev/full").status, 1);
}

} // namespace

} // namespace brindle::host
