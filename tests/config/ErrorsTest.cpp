#include <brindle/config/DeferredErrorReporter.h>
#include <brindle/config/ErrorManager.h>

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

namespace brindle::config {

namespace {

/// Records what is reported, while it is installed.
class RecordingManager : public ErrorManager {
public:
    struct Error {
        ErrorLevel level;
        std::string key;
        std::uint32_t module;
        std::int32_t code;
        bool deferrable;
        std::vector<ReplacementValue> values;
        bool wasDeferred;
    };

    RecordingManager() { Set(this); }
    ~RecordingManager() override { Set(nullptr); }

    void ThrowErrorImpl(ErrorLevel inLevel, char const* inKey, std::uint32_t inModule,
                        std::int32_t inCode, bool inDeferrable, ReplacementValue const& inFirst,
                        ReplacementValue const& inSecond, ReplacementValue const& inThird,
                        ReplacementValue const& inFourth) override {
        errors.push_back({inLevel,
                          inKey,
                          inModule,
                          inCode,
                          inDeferrable,
                          {inFirst, inSecond, inThird, inFourth},
                          IsErrorReportingDeferred()});
        if (throwsInt) {
            throw 42;
        }
    }
    using ErrorManager::RemoveDeferredErrorReporter;

    std::vector<Error> errors;
    bool throwsInt = false;
};

void Raise(std::int32_t inCode, bool inDeferrable = true) {
    ThrowError(kErrorLevel_NonFatal, "$$$/x=y", 7, inCode, inDeferrable, {}, {}, {}, {});
}

TEST(ErrorManager, MustBeInstalledForErrorsAndReporters) {
    char const* const text = "brn::config::ErrorManager not initialized. Check brn/config/Errors.";
    for (auto const use : {+[] { Raise(1); }, +[] { DeferredErrorReporter reporter; }}) {
        try {
            use();
            FAIL() << "nothing thrown";
        } catch (std::logic_error const& error) {
            EXPECT_STREQ(text, error.what());
        }
    }
}

TEST(ErrorManager, ReceivesTheTestErrorsWithTypedValues) {
    RecordingManager manager;
    TestThrowError(true);
    TestThrowError(false);
    ASSERT_EQ(2u, manager.errors.size());

    auto const& fatal = manager.errors[0];
    EXPECT_EQ(kErrorLevel_Fatal, fatal.level);
    EXPECT_EQ("$$$/brn/config/Error/test/fataltest=This is a fatal exception.", fatal.key);
    EXPECT_EQ(100u, fatal.module);
    EXPECT_EQ(21, fatal.code);
    EXPECT_TRUE(fatal.deferrable);

    auto const& nonFatal = manager.errors[1];
    EXPECT_EQ(kErrorLevel_NonFatal, nonFatal.level);
    EXPECT_EQ(20, nonFatal.code);
    EXPECT_EQ("$$$/brn/config/Error/test/nonfataltest=This is a non-fatal exception. "
              "int:^1, uint:^2, double:^3",
              nonFatal.key);
    EXPECT_EQ(ReplacementValue::kKind_Signed, nonFatal.values[0].GetKind());
    EXPECT_EQ(std::numeric_limits<std::int32_t>::min(), nonFatal.values[0].GetSigned());
    EXPECT_EQ(ReplacementValue::kKind_Unsigned, nonFatal.values[1].GetKind());
    EXPECT_EQ(4294967295u, nonFatal.values[1].GetUnsigned());
    EXPECT_EQ(ReplacementValue::kKind_Double, nonFatal.values[2].GetKind());
    EXPECT_EQ(29.2334, nonFatal.values[2].GetDouble());
    EXPECT_EQ(ReplacementValue::kKind_None, nonFatal.values[3].GetKind());
}

TEST(ErrorManager, TurnsWhateverIsThrownIntoAReturnCode) {
    RecordingManager manager;
    EXPECT_EQ(7, manager.ExecuteFunctionWithTopLevelExceptionHandler([] { return 7; }));
    EXPECT_EQ(1, manager.ExecuteFunctionWithTopLevelExceptionHandler([]() -> int { throw 3; }));
    EXPECT_EQ(1, manager.ExecuteFunctionWithTopLevelExceptionHandler({}));
}

TEST(ErrorManager, LetsWhatItThrowsThroughToWhoRaised) {
    RecordingManager manager;
    manager.throwsInt = true;
    auto const reporter = manager.NewDeferredErrorReporter(true);
    EXPECT_THROW(Raise(5), int);
    manager.throwsInt = false;
    reporter->Finish();
    EXPECT_EQ(5, manager.errors.back().code) << "it was recorded before it was thrown";
}

TEST(DeferredErrorReporter, ReplaysTheLastErrorOnce) {
    RecordingManager manager;
    auto const reporter = manager.NewDeferredErrorReporter(true);
    Raise(1);
    Raise(2);
    Raise(3, false);
    EXPECT_EQ(3u, manager.errors.size()) << "deferral does not keep errors from the manager";
    EXPECT_TRUE(manager.errors[0].wasDeferred);

    reporter->Finish();
    reporter->Finish();
    ASSERT_EQ(4u, manager.errors.size());
    EXPECT_EQ(2, manager.errors[3].code);
    EXPECT_TRUE(manager.errors[3].wasDeferred);
}

TEST(DeferredErrorReporter, RecordsInTheNewestAloneAndOnlyWhileItLives) {
    RecordingManager manager;
    auto const outer = manager.NewDeferredErrorReporter(true);
    {
        auto const inner = manager.NewDeferredErrorReporter(false);
        Raise(1);
        outer->Finish(); // nothing went to the outer one
        inner->Finish(); // its flag is clear
        EXPECT_EQ(1u, manager.errors.size());
        inner->SetReportErrorWhenFinished(true);
        inner->Finish();
        EXPECT_EQ(2u, manager.errors.size()) << "the flag was clear, but the error is kept";
    }
    Raise(3);
    outer->Finish();
    EXPECT_EQ(3, manager.errors.back().code);
    EXPECT_EQ(4u, manager.errors.size());
}

TEST(DeferredErrorReporter, CopiesRecordNothingAndLeaveTheListAlone) {
    RecordingManager manager;
    boost::intrusive_ptr<DeferredErrorReporter> const original = new DeferredErrorReporter;
    EXPECT_TRUE(original->GetReportErrorWhenFinished());
    Raise(1);
    {
        boost::intrusive_ptr<DeferredErrorReporter> const copy =
            new DeferredErrorReporter(*original);
        Raise(2);
        copy->Finish();
        EXPECT_EQ(1, manager.errors.back().code) << "the copy holds what was recorded before it";
    }
    manager.RemoveDeferredErrorReporter(nullptr);
    EXPECT_TRUE(manager.IsErrorReportingDeferred());
    original->Finish();
    EXPECT_EQ(2, manager.errors.back().code);
}

TEST(DeferredErrorReporter, OutlivesAManagerThatWasUninstalledTooEarly) {
    boost::intrusive_ptr<DeferredErrorReporter> reporter;
    RecordingManager manager;
    reporter = manager.NewDeferredErrorReporter(true);
    ErrorManager::Set(nullptr);
    reporter.reset();
}

} // namespace

} // namespace brindle::config
