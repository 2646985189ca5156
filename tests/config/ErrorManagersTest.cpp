#include "tests/support/InThreads.h"
#include "tests/support/RecordingErrorManager.h"

#include <brindle/config/CollectingErrorManager.h>
#include <brindle/config/DeferredErrorReporter.h>
#include <brindle/config/Describe.h>
#include <brindle/config/ErrorCollector.h>
#include <brindle/config/PrintingErrorManager.h>
#include <brindle/config/Report.h>
#include <brindle/config/ScopedManagers.h>

#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <stdexcept>

namespace brindle::config {

namespace {

class ErrorManagers : public testing::Test {
protected:
    std::string TakePrinted() {
        auto const text = mPrinted.str();
        mPrinted.str("");
        return text;
    }

    std::ostringstream mPrinted;
    PrintingErrorManager mPrinting{"viewer", mPrinted};
    ScopedErrorManager mInstalled{mPrinting};
};

TEST_F(ErrorManagers, PrintSentencesThatCommandNoTerminal) {
    Report("$$$/a=No decoder for ^1.", "\x1B[7m\n");
    mPrinting.PrintException(std::runtime_error("$$$/b=Bad."));
    EXPECT_EQ(TakePrinted(), "viewer: No decoder for \xEF\xBF\xBD[7m\xEF\xBF\xBD.\n"
                             "viewer: Bad.\n");
    EXPECT_EQ(mPrinting.Count(), 2u);
}

TEST_F(ErrorManagers, AreInstalledForAScope) {
    EXPECT_EQ(mInstalled.Former(), nullptr);
    try {
        PrintingErrorManager inner{"inner", mPrinted};
        ScopedErrorManager const installed(inner);
        EXPECT_EQ(installed.Former(), &mPrinting);
        ThrowError(kErrorLevel_NonFatal, "$$$/inner=one ^1", 1, 2, true, 7);
        throw std::runtime_error("an exception leaves the scope");
    } catch (std::runtime_error const&) {
    }
    EXPECT_EQ(ErrorManager::Get(), &mPrinting);
    ThrowError(kErrorLevel_NonFatal, "$$$/outer=two", 1, 3);
    EXPECT_EQ(TakePrinted(), "inner: one 7\nviewer: two\n");
    struct : Localizer {
        UTF16String LocalizeString(char const*) override { return {}; }
    } localizer;
    {
        ScopedLocalizer const installed(localizer);
        EXPECT_EQ(Localizer::Get(), &localizer);
    }
    EXPECT_FALSE(Localizer::Initialized());
}

TEST_F(ErrorManagers, ShowWhatAReporterRecordsOnlyOnce) {
    tests::RecordingErrorManager behind;
    CollectingErrorManager chained(behind);
    struct {
        ErrorManager& manager;
        std::function<std::string()> take;
    } const cases[] = {{mPrinting, [&] { return TakePrinted(); }},
                       {chained, [&] { return behind.TakeLines(); }}};
    for (auto const& [manager, take] : cases) {
        ErrorManager::Set(&manager);
        auto const reporter = manager.NewDeferredErrorReporter(true);
        Report("$$$/a=first");
        Report("$$$/a=second");
        EXPECT_EQ(take(), "");
        ThrowError(kErrorLevel_Fatal, "$$$/a=now", 1000, 0, false, {}, {}, {}, {});
        EXPECT_NE(take().find("now"), std::string::npos);
        reporter->Finish();
        EXPECT_NE(take().find("second\n"), std::string::npos);
    }
}

TEST_F(ErrorManagers, LetTheNewestCollectorOfAThreadCollect) {
    std::optional<ErrorCollector> outer(std::in_place);
    Report("$$$/a=^1", 1);
    std::optional<ErrorCollector> inner(std::in_place);
    Report(kError_FatalTest);
    outer.reset(); // the older one first
    Report("$$$/a=^1", 3);
    ASSERT_EQ(inner->Errors().size(), 2u);
    EXPECT_EQ(inner->Errors()[0].Sentence(), u"This is a fatal exception.");
    auto const errors = inner->TakeErrors();
    EXPECT_TRUE(inner->Errors().empty());
    inner.reset();
    EXPECT_EQ(TakePrinted(), "") << "collected errors are not shown";
    EXPECT_EQ(mPrinting.Count(), 0u);
    errors[1].Raise();
    EXPECT_EQ(TakePrinted(), "viewer: 3\n");
}

TEST_F(ErrorManagers, KeepTheErrorsOfThreadsApart) {
    tests::InThreads(4, [](unsigned int inThread) {
        for (unsigned int task = 0; task < 50; ++task) {
            ErrorCollector collector;
            Report("$$$/a=^1", inThread);
            EXPECT_EQ(collector.Errors().size(), 1u);
            EXPECT_EQ(collector.Errors().at(0).values[0].GetUnsigned(), inThread);
        }
        Report("$$$/a=whole line");
    });
    EXPECT_EQ(TakePrinted(), "viewer: whole line\nviewer: whole line\n"
                             "viewer: whole line\nviewer: whole line\n");
}

TEST_F(ErrorManagers, AreNamedToThoseWhoHaveInstalledNone) {
    ErrorManager::Set(nullptr);
    try {
        Report("$$$/a=x");
        FAIL() << "nothing thrown";
    } catch (std::logic_error const& error) {
        EXPECT_NE(DescribeInUTF8(error).find("ErrorManager::Set"), std::string::npos);
    }
}

} // namespace

} // namespace brindle::config
