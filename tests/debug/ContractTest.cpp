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
    int values[2];
    for (bool const nullAllowed : {false, true}) {
        for (int* const address : {values, static_cast<int*>(nullptr)}) {
            bool const isValid = address != nullptr || nullAllowed;
            EXPECT_EQ(IsValidAddress(address, nullAllowed), isValid);
            EXPECT_EQ(IsValidAddressRange(address, 8u, nullAllowed), isValid);
            EXPECT_EQ(IsValidAddressRange(address, values + 1, nullAllowed), isValid);
        }
    }
    EXPECT_TRUE(IsValidAddressRange(nullptr, nullptr, true));
    EXPECT_EQ(S_shown, "");
    EXPECT_TRUE(IsValidAddressRange(values, values, false)) << "goes on with what it has";
    EXPECT_EQ(S_shown, "[debug/src/Debug-76]\r\n");
    EXPECT_FALSE(IsValidAddressRange(nullptr, nullptr, false));
}

} // namespace

} // namespace brindle::debug
