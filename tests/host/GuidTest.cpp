#include "tests/host/Command.h"

#include <set>
#include <sstream>

namespace brindle::host {

namespace {

using GuidCommand = tests::Command;

TEST_F(GuidCommand, WritesAsManyNewIdentifiersAsAreAskedFor) {
    EXPECT_EQ(37u, Run("guid").output.size());
    std::istringstream words(Run("guid 1000").output);
    EXPECT_EQ(1000u, std::set<std::string>(std::istream_iterator<std::string>(words), {}).size());
    for (char const* const wrong : {"guid 0", "guid 1000001", "guid x", "guid 1 2", "guid --x"}) {
        ExpectWrongUsage(wrong);
    }
}

} // namespace

} // namespace brindle::host
