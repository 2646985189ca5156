#include "tests/support/RecordingErrorManager.h"

#include <brindle/config/DeferredErrorReporter.h>

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

namespace brindle::config {

namespace {

using Reporter = boost::intrusive_ptr<DeferredErrorReporter>;

void Raise(std::int32_t inCode, bool inDeferrable = true) {
    ThrowError(kErrorLevel_NonFatal, "$$$/a key that needs storage of its own=y", 7, inCode,
               inDeferrable, {}, {}, {}, {});
}

using tests::RecordingErrorManager;
using Codes = RecordingErrorManager::Codes;
using Flags = RecordingErrorManager::Flags;

TEST(ErrorManager, MustBeInstalledForErrorsAndReporters) {
    for (auto const use : {+[] { Raise(1); }, +[] { DeferredErrorReporter reporter; }}) {
        try {
            use();
            FAIL() << "nothing thrown";
        } catch (std::logic_error const& error) {
            EXPECT_STREQ("brn::config::ErrorManager not initialized. Check brn/config/Errors.",
                         error.what());
        }
    }
}

TEST(ErrorManager, ReceivesTheTestErrorsWithTypedValues) {
    RecordingErrorManager manager;
    TestThrowError(true);
    EXPECT_EQ(kErrorLevel_Fatal, manager.level);
    EXPECT_EQ("$$$/brn/config/Error/test/fataltest=This is a fatal exception.", manager.key);
    EXPECT_EQ(100u, manager.module);
    EXPECT_EQ(Flags(true, false), manager.flags);

    TestThrowError(false);
    EXPECT_EQ(kErrorLevel_NonFatal, manager.level);
    EXPECT_EQ("$$$/brn/config/Error/test/nonfataltest=This is a non-fatal exception. "
              "int:^1, uint:^2, double:^3",
              manager.key);
    EXPECT_EQ(Codes({21, 20}), manager.codes);
    for (int kind = 0; kind < 4; ++kind) {
        EXPECT_EQ((kind + 1) % 4, manager.values[static_cast<std::size_t>(kind)].GetKind());
    }
    EXPECT_EQ(std::numeric_limits<std::int32_t>::min(), manager.values[0].GetSigned());
    EXPECT_EQ(4294967295u, manager.values[1].GetUnsigned());
    EXPECT_EQ(29.2334, manager.values[2].GetDouble());
}

TEST(ErrorManager, TurnsWhateverIsThrownIntoAReturnCode) {
    RecordingErrorManager manager;
    EXPECT_EQ(7, manager.ExecuteFunctionWithTopLevelExceptionHandler([] { return 7; }));
    EXPECT_EQ(1, manager.ExecuteFunctionWithTopLevelExceptionHandler([]() -> int { throw 3; }));
    EXPECT_EQ(1, manager.ExecuteFunctionWithTopLevelExceptionHandler({}));
}

TEST(DeferredErrorReporter, ReplaysTheLastErrorOnce) {
    RecordingErrorManager manager;
    Reporter const reporter = manager.NewDeferredErrorReporter(true);
    Raise(1);
    manager.onError = [] { throw 42; };
    EXPECT_THROW(Raise(2), int) << "what the manager throws reaches whoever raised";
    Raise(3, false);
    EXPECT_EQ(Codes({1, 3}), manager.codes);
    EXPECT_EQ(Flags(false, true), manager.flags);
    reporter->Finish();
    reporter->Finish();
    EXPECT_EQ(Codes({1, 3, 2}), manager.codes);
    EXPECT_EQ(Flags(true, true), manager.flags);
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
    EXPECT_EQ(Codes({1, 2, 2, 1}), manager.codes);
    EXPECT_EQ("$$$/a key that needs storage of its own=y", manager.key);
}

TEST(DeferredErrorReporter, RecordsInTheNewestAloneAndOnlyWhileItLives) {
    RecordingErrorManager manager;
    Reporter const outer = manager.NewDeferredErrorReporter(true);
    {
        Reporter const inner = manager.NewDeferredErrorReporter(false);
        Raise(1);
        outer->Finish(); // nothing went to the outer one
        inner->Finish(); // its flag is clear
        EXPECT_EQ(Codes({1}), manager.codes);
        inner->SetReportErrorWhenFinished(true);
        inner->Finish();
        EXPECT_EQ(Codes({1, 1}), manager.codes) << "the error was kept";
    }
    Raise(3);
    outer->Finish();
    EXPECT_EQ(Codes({1, 1, 3, 3}), manager.codes);
}

TEST(DeferredErrorReporter, CopiesAreInNoList) {
    RecordingErrorManager manager;
    Reporter original = new DeferredErrorReporter;
    Raise(1);
    Reporter const copy = new DeferredErrorReporter(*original);
    Raise(2);
    copy->Finish();
    manager.RemoveDeferredErrorReporter(copy.get());
    original->Finish();
    EXPECT_EQ(Codes({1, 2, 1, 2}), manager.codes);
    ErrorManager::Set(nullptr);
    original.reset(); // a manager that was uninstalled too early is no crash
}

} // namespace

} // namespace brindle::config
