#include "tests/host/Command.h"

#include <set>
#include <sstream>

namespace brindle::host {

namespace {

using GuidCommand = tests::Command;

TEST_F(GuidCommand, WritesAsManyNewIdentifiersAsAreAskedFor) {
    EXPECT_EQ(Run("guid").output.size(), 37u);
    std::istringstream words(Run("guid 1000").output);
    EXPECT_EQ(std::set<std::string>(std::istream_iterator<std::string>(words), {}).size(), 1000u);
    for (char const* const wrong : {"guid 0", "guid 1000001", "guid x", "guid 1 2", "guid --x"}) {
        ExpectWrongUsage(wrong);
    }
}

} // namespace

} // namespace brindle::host
