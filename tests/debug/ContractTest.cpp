#include "debug/src/ContractMessage.h"

#include <brindle/config/ErrorManager.h>
#include <brindle/debug/Contract.h>

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace brindle::debug {

namespace {

std::string S_shown;

/// Throws the code of a fatal error, as a host may.
class ThrowingManager : public config::ErrorManager {
public:
    ThrowingManager() { Set(this); }
    ~ThrowingManager() override { Set(nullptr); }

    void ThrowErrorImpl(config::ErrorLevel inLevel, char const* inKey, std::uint32_t inModule,
                        std::int32_t inCode, bool, config::ReplacementValue const&,
                        config::ReplacementValue const&, config::ReplacementValue const&,
                        config::ReplacementValue const&) override {
        EXPECT_EQ(config::kErrorLevel_Fatal, inLevel);
        EXPECT_STREQ("$$$/brn/utility/Error/Contract/InputContractViolation="
                     "An input contract violation has occurred!",
                     inKey);
        EXPECT_EQ(105u, inModule);
        EXPECT_EQ(25, inCode);
        if (throws) {
            throw inCode;
        }
    }

    bool throws = true;
};

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

    ThrowingManager mManager;
};

TEST_F(Contract, ShowsWhereItStandsAndRaisesTheFatalError) {
    CheckContract(true, "holds", "some/file", 1);
    EXPECT_EQ("", S_shown);
    EXPECT_THROW(CheckContract(false, "fails", "some/file", 12), std::int32_t);
    EXPECT_EQ("[some/file-12]\r\n", S_shown);
    DisableContractDialog();
    EXPECT_THROW(CheckContract(false, "fails", "some/file", 12), std::int32_t);
    EXPECT_EQ("[some/file-12]\r\n", S_shown) << "disabled, it is raised all the same";
}

TEST_F(Contract, MayBeViolatedAndSwitchedOnManyThreads) {
    mManager.throws = false;
    SetContractMessageHook([](char const*) {});
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([i] {
            for (int round = 0; round < 200; ++round) {
                (i % 2 == 0 ? DisableContractDialog : EnableContractDialog)();
                CheckContract(false, "fails", "some/file", round);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
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

    EXPECT_THROW(IsValidAddressRange(values, values, false), std::int32_t);
    EXPECT_EQ("[debug/src/Debug-76]\r\n", S_shown);
    mManager.throws = false;
    EXPECT_TRUE(IsValidAddressRange(values + 1, values, true)) << "goes on with what it has";
    EXPECT_FALSE(IsValidAddressRange(nullptr, nullptr, false));
}

} // namespace

} // namespace brindle::debug
