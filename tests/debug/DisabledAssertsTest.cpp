#define BRN_DISABLE_ASSERTS
#include <brindle/debug/Asserts.h>

#include <gtest/gtest.h>

#include <string>

namespace brindle::debug {

TEST(DisabledAsserts, EvaluateNothingAndUseTheirOperands) {
    int evaluated = 0;
    auto const fail = [&] { return ++evaluated < 0; };
    bool const isUsedHereOnly = false;
    std::string const message = "used here only";
    BRN_ASSERT(fail());
    BRN_ASSERT(isUsedHereOnly);
    BRN_ASSERT_MESSAGE(fail(), message + "!");
    BRN_ASSERT_MESSAGE([] { return false; }(), "a lambda");
    EXPECT_EQ(evaluated, 0);
}

} // namespace brindle::debug
