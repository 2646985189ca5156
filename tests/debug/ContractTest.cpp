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
    std::string const error = "0 105 25 $$$/brn/utility/Error/Contract/InputContractViolation="
                              "An input contract violation has occurred!\n";
    CheckContract(true, "holds", "some/file", 1);
    EXPECT_EQ(S_shown + mManager.TakeLines(), "");
    CheckContract(false, "fails", "some/file", 12);
    EXPECT_EQ(std::exchange(S_shown, {}), "[some/file-12]\r\n");
    EXPECT_EQ(mManager.TakeLines(), error);
    DisableContractDialog();
    CheckContract(false, "fails", "some/file", 12);
    EXPECT_EQ(S_shown + mManager.TakeLines(), error) << "disabled, it is raised all the same";
}

TEST_F(Contract, AddressesAreJudgedByNullAlone) {
    int values[2]{};
    EXPECT_TRUE(IsValidAddress(values, false));
    EXPECT_TRUE(IsValidAddressRange(values, 8u, false));
    EXPECT_TRUE(IsValidAddressRange(values, values + 1, false));
    for (bool const nullAllowed : {false, true}) {
        EXPECT_EQ(IsValidAddress(nullptr, nullAllowed), nullAllowed);
        EXPECT_EQ(IsValidAddressRange(nullptr, 8u, nullAllowed), nullAllowed);
        EXPECT_EQ(IsValidAddressRange(nullptr, values + 1, nullAllowed), nullAllowed);
    }
    EXPECT_EQ(S_shown, "");
    EXPECT_TRUE(IsValidAddressRange(values, values, false)) << "goes on with what it has";
    EXPECT_EQ(S_shown, "[debug/src/Debug-76]\r\n");
}

} // namespace

} // namespace brindle::debug
