#include "tests/support/RecordingErrorManager.h"

#include <brindle/config/DeferredErrorReporter.h>

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

namespace brindle::config {

namespace {

using Reporter = boost::intrusive_ptr<DeferredErrorReporter>;
using tests::RecordingErrorManager;
using Codes = RecordingErrorManager::Codes;

constexpr char kKey[] = "$$$/a key that needs storage of its own=y";

void Raise(std::int32_t inCode, bool inDeferrable = true) {
    ThrowError(kErrorLevel_NonFatal, kKey, 7, inCode, inDeferrable, {}, {}, {}, {});
}

TEST(ErrorManager, MustBeInstalledForErrorsAndReporters) {
    for (auto const use : {+[] { Raise(1); }, +[] { DeferredErrorReporter reporter; }}) {
        try {
            use();
            FAIL() << "nothing thrown";
        } catch (std::logic_error const& error) {
            EXPECT_STREQ(error.what(),
                         "brn::config::ErrorManager not initialized. Check brn/config/Errors.");
        }
    }
}

TEST(ErrorManager, ReceivesTheTestErrorsWithTypedValues) {
    RecordingErrorManager manager;
    TestThrowError(true);
    TestThrowError(false);
    EXPECT_EQ(manager.TakeLines(),
              "0 100 21 $$$/brn/config/Error/test/fataltest=This is a fatal exception.\n"
              "1 100 20 $$$/brn/config/Error/test/nonfataltest=This is a non-fatal exception. "
              "int:^1, uint:^2, double:^3\n");
    for (int kind = 0; kind < 4; ++kind) {
        EXPECT_EQ(manager.values[static_cast<std::size_t>(kind)].GetKind(), (kind + 1) % 4);
    }
    EXPECT_EQ(manager.values[0].GetSigned(), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(manager.values[1].GetUnsigned(), 4294967295u);
    EXPECT_EQ(manager.values[2].GetDouble(), 29.2334);
}

// A character would be a number, and null an empty text.
static_assert(!std::is_constructible_v<ReplacementValue, std::nullptr_t>);
static_assert(!std::is_constructible_v<ReplacementValue, char16_t>);

TEST(ErrorManager, TakesValuesOfEveryIntegerType) {
    EXPECT_EQ(ReplacementValue(-5LL).GetSigned(), -5);
    EXPECT_EQ(ReplacementValue(5ULL).GetUnsigned(), 5u);
    EXPECT_EQ(ReplacementValue(std::int16_t{-5}).GetSigned(), -5);
}

TEST(ErrorManager, TurnsWhateverIsThrownIntoAReturnCode) {
    RecordingErrorManager manager;
    EXPECT_EQ(manager.ExecuteFunctionWithTopLevelExceptionHandler([] { return 7; }), 7);
    EXPECT_EQ(manager.ExecuteFunctionWithTopLevelExceptionHandler([]() -> int { throw 3; }), 1);
    EXPECT_EQ(manager.ExecuteFunctionWithTopLevelExceptionHandler({}), 1);
}

TEST(DeferredErrorReporter, ReplaysTheLastErrorOnce) {
    RecordingErrorManager manager;
    Reporter const reporter = manager.NewDeferredErrorReporter(true);
    Raise(1);
    manager.onError = [] { throw 42; };
    EXPECT_THROW(Raise(2), int) << "what the manager throws reaches the code that raised the error";
    Raise(3, false);
    reporter->Finish();
    reporter->Finish();
    std::string const key = std::string(kKey) + '\n';
    EXPECT_EQ(manager.TakeLines(), "1 7 1 " + key + "1 7 3 at once " + key + "1 7 2 " + key);
}

TEST(DeferredErrorReporter, MayBeUsedAndDroppedWhileItReplays) {
    RecordingErrorManager manager;
    Reporter reporter = manager.NewDeferredErrorReporter(true);
    Raise(1);
    manager.onError = [&] {
        Raise(2);
        manager.onError = [&] { reporter.reset(); };
        reporter->Finish();
    };
    reporter->Finish();
    EXPECT_EQ(manager.codes, Codes({1, 2, 2, 1}));
    EXPECT_NE(manager.TakeLines().find(kKey), std::string::npos);
}

TEST(DeferredErrorReporter, RecordsInTheNewestAloneAndOnlyWhileItLives) {
    RecordingErrorManager manager;
    Reporter const outer = manager.NewDeferredErrorReporter(true);
    {
        Reporter const inner = manager.NewDeferredErrorReporter(false);
        Raise(1);
        outer->Finish(); // nothing went to the outer one
        inner->Finish(); // its flag is clear
        EXPECT_EQ(manager.codes, Codes({1}));
        inner->SetReportErrorWhenFinished(true);
        inner->Finish();
        EXPECT_EQ(manager.codes, Codes({1, 1})) << "the error was kept";
    }
    Raise(3);
    outer->Finish();
    EXPECT_EQ(manager.codes, Codes({1, 1, 3, 3}));
}

TEST(DeferredErrorReporter, CopiesAreInNoList) {
    RecordingErrorManager manager;
    Reporter const original = new DeferredErrorReporter;
    Raise(1);
    Reporter const copy = new DeferredErrorReporter(*original);
    Raise(2);
    copy->Finish();
    manager.RemoveDeferredErrorReporter(copy.get());
    original->Finish();
    EXPECT_EQ(manager.codes, Codes({1, 2, 1, 2}));
}

TEST(DeferredErrorReporter, LeavesEveryListThatItEnteredWhicheverManagerIsInstalled) {
    RecordingErrorManager first;
    Reporter reporter = new DeferredErrorReporter;
    {
        RecordingErrorManager second;
        second.AddDeferredErrorReporter(reporter.get());
        second.AddDeferredErrorReporter(reporter.get());
        second.RemoveDeferredErrorReporter(reporter.get());
        EXPECT_TRUE(second.IsErrorReportingDeferred());
    } // its list goes first, and the reporter stays in the other one
    EXPECT_TRUE(first.IsErrorReportingDeferred());
    reporter.reset(); // while no manager is installed
    EXPECT_FALSE(first.IsErrorReportingDeferred());
    ErrorManager::Set(&first);
    Raise(1);
}

} // namespace

} // namespace brindle::config
