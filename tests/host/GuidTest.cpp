#include "tests/host/Command.h"

#include <regex>
#include <set>
#include <sstream>

namespace brindle::host {

namespace {

using GuidCommand = tests::Command;

TEST_F(GuidCommand, WritesAsManyNewIdentifiersAsAreAskedFor) {
    std::string const one = "[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}\n";
    EXPECT_TRUE(std::regex_match(Run("guid").output, std::regex(one)));
    std::istringstream words(Run("guid 1000").output);
    EXPECT_EQ(1000u, std::set<std::string>(std::istream_iterator<std::string>(words), {}).size());
    for (char const* const wrong : {"guid 0", "guid 1000001", "guid x", "guid 1 2", "guid --x"}) {
        ExpectWrongUsage(wrong);
    }
}

} // namespace

} // namespace brindle::host
