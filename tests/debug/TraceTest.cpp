#include <brindle/debug/ScopedTraceHandler.h>
#include <brindle/debug/Trace.h>
#include <brindle/debug/TraceCategory.h>

#include "tests/debug/RecordingHandler.h"
#include "tests/support/InPreferences.h"
#include "tests/support/RecordingErrorManager.h"

#include <brindle/config/Errors.h>
#include <brindle/console/Console.h>
#include <brindle/console/ConsoleLogFile.h>
#include <brindle/threads/AsyncThreadedExecutor.h>

#include <gtest/gtest.h>

#include <locale>
#include <stdexcept>

namespace brindle::debug {

namespace {

using tests::RecordingHandler;

using TraceText = tests::InPreferences;

TEST_F(TraceText, GoesToTheInstalledHandlerAndOtherwiseIntoTheLog) {
    Fill(Preference("No Client Name Log.txt"), "");
    EXPECT_EQ(tests::InProcess([] {
                  console::ConsoleLogFile::Terminate(); // one that another test may have begun
                  auto* const standard = GetMasterTraceHandler();
                  Trace("by default\r\n");
                  RecordingHandler handler;
                  bool const isInstalled = GetMasterTraceHandler() == &handler;
                  Trace("some \xFF text");
                  Trace("");
                  Trace(nullptr);
                  RemoveMasterTraceHandler();
                  Trace("again\r\n");
                  bool const isStandard = GetMasterTraceHandler() == standard;
                  return handler.texts + (isInstalled && isStandard ? " each in its turn" : "");
              }),
              "some \xFF text||| each in its turn");
    auto const log = ContentOf(Preference("No Client Name Log.txt"));
    EXPECT_NE(log.find("      by default\r\nTicks = "), std::string::npos) << log;
    EXPECT_EQ(log.substr(log.size() - 13), "      again\r\n");
}

TEST_F(TraceText, MayBeTracedByHandlersThatTraceOrThrow) {
    RecordingHandler handler;
    handler.onText = [] { Trace("nested"); };
    Trace("first");
    EXPECT_EQ(handler.texts, "first|nested|nested|nested|nested|nested|nested|nested|");
    {
        struct : TraceHandler {
            void Trace(UTF8String const&) override {}
        } silent;
        ScopedTraceHandler const installed(silent);
        Trace("unheard");
    }
    EXPECT_EQ(GetMasterTraceHandler(), &handler);
    handler.texts.clear();
    handler.onText = [] { throw std::runtime_error("no disk"); };
    for (int call = 0; call < 20; ++call) {
        EXPECT_THROW(Trace("x"), std::runtime_error);
    }
    EXPECT_EQ(handler.texts.size(), 40u) << "a handler that threw is called again";
    handler.texts.clear();
    handler.onText = nullptr;
    tests::RecordingErrorManager manager;
    manager.onError = [] { TraceMessage("Error"_utf8, 0, "an error is raised"); };
    config::TestThrowError(false);
    EXPECT_NE(handler.texts.find("<Error> <0> an error is raised\r\n|"), std::string::npos);
}

TEST_F(TraceText, IsComposedOnlyIfItIsWanted) {
    EXPECT_EQ(tests::InProcess([] {
                  RecordingHandler handler;
                  TraceCategory const category("a category"_utf8);
                  struct Grouping : std::numpunct<char> {
                      std::string do_grouping() const override { return "\3"; }
                  };
                  std::locale::global(std::locale(std::locale(), new Grouping));
                  int evaluated = 0;
                  for (std::int32_t volume = -3; volume <= 7; volume += 5) {
                      BRN_TRACE(category, volume,
                                "frame " << 1000 + ++evaluated << ", " << 0.5 << "\xC3\xA9");
                  }
                  TraceMessage("x\0y"_utf8, 1, "cut\0off"_utf8);
                  TraceMessage("x"_utf8, 1, static_cast<char const*>(nullptr));
                  return handler.texts + std::to_string(evaluated);
              }),
              "@ <a category> <-3> frame 1001, 0.5\xC3\xA9\r\n|"
              "@ <a category> <2> frame 1002, 0.5\xC3\xA9\r\n|"
              "@ <x> <1> cut\r\n|@ <x> <1> \r\n|2");
}

TEST_F(TraceText, ExceptionsInExecutorsAreTracedIfTheirCategoryIsRaised) {
    EXPECT_EQ(
        tests::InProcess([] {
            RecordingHandler handler;
            auto const pool =
                threads::CreateAsyncThreadedExecutor("pool", 1, threads::kThreadPriorityNormal);
            for (bool const isConnected : {false, true, false}) {
                isConnected ? console::Initialize() : console::Terminate();
                for (std::int32_t const volume : {5, 6}) {
                    SetTraceVolume("Executors"_utf8, volume);
                    pool->Post([] { throw std::runtime_error("why"); }, 0);
                    pool->Post([] { throw 1; }, 0);
                    pool->Synchronize();
                }
            }
            return handler.texts;
        }),
        "@ <Executors> <6> an exception left a function posted to pool: why\r\n|@ <Executors> "
        "<6> an exception left a function posted to pool: not a std::exception\r\n|");
}

} // namespace

} // namespace brindle::debug
