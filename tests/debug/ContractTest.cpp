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
    EXPECT_EQ(S_shown, "");
    EXPECT_EQ(mManager.codes.size(), 0u);
    CheckContract(false, "fails", "some/file", 12);
    EXPECT_EQ(S_shown, "[some/file-12]\r\n");
    EXPECT_EQ(mManager.level, config::kErrorLevel_Fatal);
    EXPECT_EQ(mManager.key, "$$$/brn/utility/Error/Contract/InputContractViolation="
                            "An input contract violation has occurred!");
    EXPECT_EQ(mManager.module, 105u);
    EXPECT_TRUE(mManager.flags.first);
    DisableContractDialog();
    CheckContract(false, "fails", "some/file", 12);
    EXPECT_EQ(S_shown, "[some/file-12]\r\n") << "disabled, it is raised all the same";
    EXPECT_EQ(mManager.codes, std::vector<std::int32_t>(2, 25));
}

TEST_F(Contract, AddressesAreJudgedByNullAlone) {
    int values[2];
    for (bool const nullAllowed : {false, true}) {
        EXPECT_TRUE(IsValidAddress(values, nullAllowed));
        EXPECT_EQ(IsValidAddress(nullptr, nullAllowed), nullAllowed);
        EXPECT_TRUE(IsValidAddressRange(values, 8u, nullAllowed));
        EXPECT_EQ(IsValidAddressRange(nullptr, 8u, nullAllowed), nullAllowed);
        EXPECT_TRUE(IsValidAddressRange(values, values + 1, nullAllowed));
        EXPECT_EQ(IsValidAddressRange(nullptr, values, nullAllowed), nullAllowed);
    }
    EXPECT_TRUE(IsValidAddressRange(nullptr, nullptr, true));
    EXPECT_EQ(S_shown, "");
    EXPECT_TRUE(IsValidAddressRange(values, values, false)) << "goes on with what it has";
    EXPECT_EQ(S_shown, "[debug/src/Debug-76]\r\n");
    EXPECT_FALSE(IsValidAddressRange(nullptr, nullptr, false));
}

} // namespace

} // namespace brindle::debug
