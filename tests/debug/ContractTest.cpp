#include "debug/src/contract/ContractMessage.h"

#include "tests/support/RecordingErrorManager.h"

#include <brindle/debug/Contract.h>

#include <gtest/gtest.h>

namespace brindle::debug {

namespace {

std::string S_shown;

class Contract : public testing::Test {
protected:
    Contract() {
        S_shown.clear();
        SetContractMessageHook([](char const* inText) { S_shown += inText; });
    }
    ~Contract() override {
        SetContractMessageHook(nullptr);
        EnableContractDialog();
    }

    tests::RecordingErrorManager mManager;
};

TEST_F(Contract, ShowsWhereItStandsAndRaisesTheFatalError) {
    CheckContract(true, "holds", "some/file", 1);
    EXPECT_TRUE(S_shown.empty() && mManager.codes.empty());
    CheckContract(false, "fails", "some/file", 12);
    EXPECT_EQ("[some/file-12]\r\n", S_shown);
    EXPECT_EQ(config::kErrorLevel_Fatal, mManager.level);
    EXPECT_EQ("$$$/brn/utility/Error/Contract/InputContractViolation="
              "An input contract violation has occurred!",
              mManager.key);
    EXPECT_EQ(105u, mManager.module);
    EXPECT_TRUE(mManager.flags.first);
    DisableContractDialog();
    CheckContract(false, "fails", "some/file", 12);
    EXPECT_EQ("[some/file-12]\r\n", S_shown) << "disabled, it is raised all the same";
    EXPECT_EQ(std::vector<std::int32_t>(2, 25), mManager.codes);
}

TEST_F(Contract, AddressesAreJudgedByNullAlone) {
    int values[2];
    for (bool const nullAllowed : {false, true}) {
        EXPECT_TRUE(IsValidAddress(values, nullAllowed));
        EXPECT_EQ(nullAllowed, IsValidAddress(nullptr, nullAllowed));
        EXPECT_TRUE(IsValidAddressRange(values, 8u, nullAllowed));
        EXPECT_EQ(nullAllowed, IsValidAddressRange(nullptr, 8u, nullAllowed));
        EXPECT_TRUE(IsValidAddressRange(values, values + 1, nullAllowed));
        EXPECT_EQ(nullAllowed, IsValidAddressRange(nullptr, values, nullAllowed));
    }
    EXPECT_TRUE(IsValidAddressRange(nullptr, nullptr, true));
    EXPECT_EQ("", S_shown);
    EXPECT_TRUE(IsValidAddressRange(values, values, false)) << "goes on with what it has";
    EXPECT_EQ("[debug/src/Debug-76]\r\n", S_shown);
    EXPECT_FALSE(IsValidAddressRange(nullptr, nullptr, false));
}

} // namespace

} // namespace brindle::debug
