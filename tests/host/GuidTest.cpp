#include "tests/host/Command.h"

#include <regex>
#include <set>
#include <sstream>

namespace brindle::host {

namespace {

class GuidCommand : public tests::CommandTest {};

TEST_F(GuidCommand, WritesAsManyNewIdentifiersAsAreAskedFor) {
    std::regex const form("[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}");
    std::set<std::string> seen;
    for (auto const& [words, count] : {std::pair{"guid", 1u}, {"guid 1000", 1000u}}) {
        Outcome const outcome = Run(words);
        EXPECT_EQ(0, outcome.status);
        seen.clear();
        std::istringstream lines(outcome.output);
        for (std::string line; std::getline(lines, line);) {
            EXPECT_TRUE(std::regex_match(line, form)) << line;
            seen.insert(line);
        }
        EXPECT_EQ(count, seen.size());
    }
    for (char const* const words : {"guid 0", "guid 1000001", "guid x", "guid 1 2", "guid --x"}) {
        Outcome const outcome = Run(words);
        EXPECT_EQ(2, outcome.status) << words;
        EXPECT_EQ("", outcome.output) << words;
    }
}

} // namespace

} // namespace brindle::host
