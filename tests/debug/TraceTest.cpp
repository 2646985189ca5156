#include <brindle/debug/Trace.h>
#include <brindle/debug/TraceCategory.h>

#include "tests/debug/InPreferences.h"
#include "tests/support/RecordingErrorManager.h"

#include <brindle/config/Errors.h>
#include <brindle/console/ConsoleLogFile.h>
#include <brindle/threads/Thread.h>

#include <gtest/gtest.h>

#include <functional>
#include <locale>
#include <stdexcept>
#include <string>

namespace brindle::debug {

namespace {

using tests::Narrow;

/// Keeps the texts, and calls a function with each.
class RecordingHandler : public TraceHandler {
public:
    RecordingHandler() { InstallMasterTraceHandler(this); }
    ~RecordingHandler() override { RemoveMasterTraceHandler(); }

    void Trace(UTF8String const& inText) override {
        texts += Narrow(inText) + '|';
        if (onText) {
            onText();
        }
    }

    std::string texts;
    std::function<void()> onText;
};

class TraceText : public tests::InPreferences {};

TEST_F(TraceText, GoesToTheInstalledHandler) {
    auto* const standard = GetMasterTraceHandler();
    ASSERT_NE(standard, nullptr);
    {
        RecordingHandler handler;
        EXPECT_EQ(GetMasterTraceHandler(), &handler);
        Trace("some \xFF text");
        Trace("");
        Trace(nullptr);
        EXPECT_EQ(handler.texts, "some \xFF text|||");
    }
    Trace("into the log, if there is one");
    EXPECT_EQ(GetMasterTraceHandler(), standard);
}

TEST_F(TraceText, GoesIntoTheLogByDefault) {
    Fill(Preference("No Client Name Log.txt"), "");
    EXPECT_EQ(tests::InProcess([] {
                  console::ConsoleLogFile::Terminate(); // one that another test may have begun
                  Trace("by default\r\n");
                  { RecordingHandler const handler; }
                  Trace("again\r\n");
                  return std::string();
              }),
              "");
    auto const log = ContentOf(Preference("No Client Name Log.txt"));
    EXPECT_NE(log.find("      by default\r\nTicks = "), std::string::npos) << log;
    EXPECT_EQ(log.substr(log.size() - 13), "      again\r\n");
}

TEST_F(TraceText, MayBeTracedByHandlersThatTraceOrThrow) {
    RecordingHandler handler;
    handler.onText = [] { Trace("nested"); };
    Trace("first");
    EXPECT_EQ(handler.texts, "first|nested|nested|nested|nested|nested|nested|nested|");
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
                  auto const thread = "<" + std::to_string(threads::GetCurrentThreadID()) + "> ";
                  for (auto at = handler.texts.find(thread); at != std::string::npos;) {
                      handler.texts.erase(at, thread.size());
                      at = handler.texts.find(thread);
                  }
                  return handler.texts + std::to_string(evaluated);
              }),
              "<a category> <-3> frame 1001, 0.5\xC3\xA9\r\n|"
              "<a category> <2> frame 1002, 0.5\xC3\xA9\r\n|"
              "<x> <1> cut\r\n|<x> <1> \r\n|2");
}

} // namespace

} // namespace brindle::debug
