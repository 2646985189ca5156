#include <brindle/debug/Asserts.h>

#include "debug/src/assert/DialogTexts.h"
#include "platform/Process.h"
#include "tests/debug/DialogTests.h"
#include "tests/support/FileSizeLimit.h"

#include <brindle/config/ClientIdentity.h>
#include <brindle/config/Localizer.h>
#include <brindle/debug/Trace.h>
#include <brindle/threads/Thread.h>
#include <brindle/utility/ThreadSafeMessageDialog.h>

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <iterator>
#include <thread>

namespace brindle::debug {

namespace {

using namespace literals;
using tests::AsUTF8;
using tests::Narrow;
using tests::Wide;

class Asserts : public tests::DialogTests {};

class RecordingHandler : public TraceHandler {
public:
    RecordingHandler() { InstallMasterTraceHandler(this); }
    ~RecordingHandler() override { RemoveMasterTraceHandler(); }
    void Trace(UTF8String const& inText) override { text += Narrow(inText); }

    std::string text;
};

std::string Prefix(std::string const& inCategory) {
    return "<" + std::to_string(threads::GetCurrentThreadID()) + "> <" + inCategory + "> <0> ";
}

TEST_F(Asserts, AreTracedAndOtherwiseSilentUntilTheyAreSwitchedOn) {
    auto const program = Answering("14200");
    EXPECT_EQ(tests::InProcess([&] {
                  ::setenv("DISPLAY", ":0", 1);
                  SetDialogProgram(program);
                  RecordingHandler handler;
                  auto const result = Display();
                  bool const isTraced = handler.text == Prefix("Assert") + "heading\r\n" +
                                                            Prefix("Assert") + "body\r\n";
                  bool const isListed = DebugDatabase::Instance().HasEntry("assert.enabled"_utf8);
                  return result + (isTraced ? " traced" : handler.text) +
                         (isListed ? " listed" : "");
              }),
              "3 traced listed");
    for (char const* const value : {"false", "", "yes", "TRUE", "true false", "1"}) {
        EXPECT_EQ(WithDialogs(program,
                              [&] {
                                  DebugDatabase::Instance().SetEntry("assert.enabled"_utf8,
                                                                     AsUTF8(value));
                                  return Display();
                              }),
                  "3")
            << value;
    }
}

TEST_F(Asserts, TheBodyTellsWhatFailedWhere) {
    std::string const process = "Process: " + platform::CommandLine() + "\r\n";
    for (std::string const message : {"", "the message"}) {
        auto const printed = WithDialogs(Answering("14200"), [&] {
            SetAssertWriteToStdOut(true);
            testing::internal::CaptureStdout();
            bool ignoreAlways = false;
            bool const isToBreak = BreakAfterAssertDialog(ignoreAlways, "a < b", message.c_str(),
                                                          "file.cpp", 12, "Function");
            return testing::internal::GetCapturedStdout() + (isToBreak ? "break" : "go on") +
                   (ignoreAlways ? " always" : "");
        });
        EXPECT_EQ(printed, "Debug Assert failed!\n" +
                               (message.empty() ? "" : message + "\r\n\r\n") +
                               "Expression: a < b\r\n" + process +
                               "File: file.cpp\r\nLine: 12\r\nFunction: Function\r\n\ngo on");
    }
}

TEST_F(Asserts, TheAnswerDecides) {
    // The second result is that of another assert, whose dialog would answer the same.
    struct {
        char const* answer;
        char const* results;
        bool isShownTwice;
    } const cases[] = {{"14200", "0 0", true},      {"14201", "3 3", true},
                       {"14202", "4 4", true},      {"14203", "4 4", false},
                       {"14205", "-1 -1", true},    {"no such button", "-1 -1", true},
                       {"no display", "3 3", true}, {"", "0 0", true}};
    for (auto const& [answer, results, isShownTwice] : cases) {
        SCOPED_TRACE(answer);
        auto const program = Answering(answer);
        auto const second = Native("second");
        EXPECT_EQ(WithDialogs(program,
                              [&] {
                                  auto const first = Display();
                                  std::filesystem::rename(Native("request"), second);
                                  return first + ' ' + Display();
                              }),
                  results);
        EXPECT_EQ(std::filesystem::exists(Native("request")), isShownTwice);
    }
    EXPECT_EQ(WithDialogs(Answering("14204"), Display),
              "... and ended with status " + std::to_string(255 << 8));
    EXPECT_EQ(WithDialogs(Answering("14203"),
                          [] {
                              bool ignoreAlways = false;
                              bool const isToBreak = BreakAfterAssertDialog(
                                  ignoreAlways, "a", nullptr, "file", 1, "f");
                              return std::string(isToBreak ? "break" : "go on") +
                                     (ignoreAlways ? " always" : "");
                          }),
              "go on always");
}

TEST_F(Asserts, ADialogThatCannotBeShownIsAResult) {
    EXPECT_EQ(WithDialogs(Native("missing"), Display), "3") << "silent without a terminal";
    EXPECT_EQ(WithDialogs(Native(""), Display), "3") << "a directory";
    EXPECT_EQ(WithDialogs(Program("no program"), Display), "3");
    EXPECT_EQ(WithDialogs(Program("#!/bin/sh\nkill -9 $$"), Display), "0");
    EXPECT_EQ(WithDialogs(Program("#!/bin/sh\nexit 1"), Display), "0");
    EXPECT_EQ(WithDialogs(Program("#!/bin/sh\nprintf 14201 >&0; kill -9 $$"), Display), "3");
    EXPECT_EQ(WithDialogs(Answering("14200"),
                          [] {
                              tests::ResourceLimit const limit(RLIMIT_NOFILE, 3);
                              return Display();
                          }),
              "3")
        << "no descriptor for it";
    EXPECT_EQ(WithDialogs(Answering("14200"),
                          [] {
                              ::unsetenv("DISPLAY");
                              ::setenv("WAYLAND_DISPLAY", "", 1);
                              return Display();
                          }),
              "3")
        << "no display";
}

TEST_F(Asserts, AHangingDialogIsEndedByTheDeveloper) {
    auto const program = Program("#!/bin/sh\necho $$ > '" + Native("pid") + "'\nexec sleep 1000\n");
    EXPECT_EQ(WithDialogs(program,
                          [&] {
                              std::thread developer([&] {
                                  pid_t process = 0;
                                  while (process == 0) {
                                      std::ifstream(Native("pid")) >> process;
                                      std::this_thread::yield();
                                  }
                                  ::kill(process, SIGKILL);
                              });
                              auto const result = Display();
                              developer.join();
                              return result;
                          }),
              "0");
}

/// How many descriptors this process has open, and whether it has children.
std::string Remains() {
    auto const count = std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    bool const hasChildren = ::waitpid(-1, nullptr, WNOHANG) != -1;
    return std::to_string(count) + (hasChildren ? " and children" : "");
}

TEST_F(Asserts, WorkInAnyProcessAndLeaveNothingBehind) {
    auto const program =
        Program("#!/bin/sh\ncat > /dev/null\n"
                "{ grep -E 'Sig(Blk|Ign)' /proc/self/status; ls /proc/$$/fd; } > '" +
                Native("state") + "'\necho 14202 >&0\n");
    std::atomic<bool> isOver{false};
    struct {
        char const* name;
        std::function<void()> prepare;
    } const cases[] = {
        {"as it is", [] {}},
        {"children are not waited for", [] { std::signal(SIGCHLD, SIG_IGN); }},
        {"every signal is blocked",
         [] {
             sigset_t all;
             ::sigfillset(&all);
             ::sigprocmask(SIG_SETMASK, &all, nullptr);
         }},
        {"standard streams are closed", [] { ::close(STDIN_FILENO), ::close(STDOUT_FILENO); }},
        {"an inherited descriptor", [] { static_cast<void>(::dup2(STDERR_FILENO, 9)); }},
        {"another thread waits for all children",
         [&] {
             std::thread([&] {
                 while (!isOver) {
                     ::waitpid(-1, nullptr, 0);
                 }
             }).detach();
         }},
    };
    for (auto const& [name, prepare] : cases) {
        SCOPED_TRACE(name);
        EXPECT_EQ(WithDialogs(program,
                              [&, prepareIt = prepare] {
                                  prepareIt();
                                  auto const before = Remains();
                                  auto const result = Display() + Display();
                                  isOver = true;
                                  return result + (Remains() == before ? "" : " left something");
                              }),
                  "44");
        auto const state = ContentOf("state");
        constexpr unsigned long kOfPrograms = 0x7FFFFFFF; // the system's library uses some others
        for (std::string const signals : {"SigBlk:\t", "SigIgn:\t"}) {
            auto const set = state.substr(state.find(signals) + signals.size(), 16);
            EXPECT_EQ(std::stoul(set, nullptr, 16) & kOfPrograms, 0u) << state;
        }
        EXPECT_EQ(state.find("\n9\n"), std::string::npos) << state;
    }
}

TEST_F(Asserts, ALargeRequestArrivesWholeOrIsNotRead) {
    std::string const body(10'000'000, 'x');
    auto const work = [&] { return std::to_string(DisplayAssert("", body.c_str())); };
    EXPECT_EQ(WithDialogs(Answering("14201"), work), "3");
    auto const question = ReadRequest(ContentOf("request"));
    ASSERT_TRUE(question);
    EXPECT_TRUE(question->body == body);
    EXPECT_EQ(WithDialogs(Program("#!/bin/sh\nexec echo 14202 >&0\n"), work), "4");
}

class Capitals : public config::Localizer {
public:
    UTF16String LocalizeString(char const* inLiteral) override {
        EXPECT_FALSE(BreakAfterContractDialog("nested", "file", 1)); // is not asked about
        return Wide("@0<" + std::string(inLiteral) + ">");
    }
};

TEST_F(Asserts, TheHostsLanguageIsSpoken) {
    auto const program = Answering("14200");
    std::string const root = "$$$/private/brindle/debug/";
    for (bool const isLocalized : {false, true}) {
        WithDialogs(program, [&] {
            Capitals localizer;
            config::Localizer::Set(isLocalized ? &localizer : nullptr);
            config::SetClientName(u"Reel"_utf16);
            return Display();
        });
        auto const question = ReadRequest(ContentOf("request"));
        ASSERT_TRUE(question);
        auto const shown = [&](std::string const& inKey, std::string const& inEnglish) {
            return isLocalized ? "<" + root + inKey + "=" + inEnglish + ">" : inEnglish;
        };
        EXPECT_EQ(question->title,
                  isLocalized ? "Reel" + shown("DefaultAssertDialogTitle", "Reel Debug Event")
                              : "Reel Debug Event");
        EXPECT_EQ(question->heading, "heading");
        EXPECT_EQ(question->body, "body");
        std::string const buttons[][2] = {
            {"14205 Copy", "Copy"},
            {"14200 Debug", "Debug"},
            {"14201 IgnoreOnce", "Ignore Once"},
            {"14202 IgnoreAlways", "Ignore Always"},
            {"14203 DisableAsserts", "Disable Asserts"},
            {"14204 KillProcess", "Kill Process"},
        };
        ASSERT_EQ(question->buttons.size(), std::size(buttons));
        for (std::size_t i = 0; i < std::size(buttons); ++i) {
            auto const& [id, english] = buttons[i];
            auto const& button = question->buttons[i];
            EXPECT_EQ(button.label,
                      std::string(isLocalized ? "@0" : "") +
                          shown("DefaultAssertDialog/" + id.substr(6) + "Button", english));
            EXPECT_EQ(std::to_string(button.id), id.substr(0, 5));
            EXPECT_EQ(button.isDefault, i < 2);
        }
    }
}

TEST_F(Asserts, AViolatedContractIsShownAndTraced) {
    auto const program = Answering("14200");
    EXPECT_EQ(WithDialogs(program,
                          [&] {
                              RecordingHandler handler;
                              static_cast<void>(BreakAfterContractDialog("a", "file.cpp", 7));
                              return handler.text == Prefix("Message") + "[file.cpp-7]\r\n"
                                         ? "traced"
                                         : handler.text;
                          }),
              "traced");
    auto const question = ReadRequest(ContentOf("request"));
    ASSERT_TRUE(question);
    EXPECT_EQ(question->title, "No Client Name Debug Event");
    EXPECT_EQ(question->heading, "No Client Name has encountered an error.");
    EXPECT_EQ(question->body, "[file.cpp-7]\n");
    ASSERT_EQ(question->buttons.size(), 1u);
    EXPECT_EQ(question->buttons[0].label, "Continue");
    EXPECT_EQ(question->buttons[0].id, 14200);
}

TEST_F(Asserts, AnExceptionOfTheLocalizerIsAFailedDialog) {
    class Thrower : public config::Localizer {
        UTF16String LocalizeString(char const*) override { throw 1; }
    };
    EXPECT_EQ(WithDialogs(Answering("14200"),
                          [] {
                              Thrower thrower;
                              config::Localizer::Set(&thrower);
                              utility::ThreadSafeMessageDialog("contract");
                              return Display();
                          }),
              "-1");
}

constexpr int Checked(int inValue) {
    return BRN_ASSERT(inValue > 0), inValue;
}

static_assert(Checked(1) == 1);

TEST_F(Asserts, TheMacroIgnoresEachPlaceByItself) {
    auto const program = Program("#!/bin/sh\ncat > /dev/null; echo x >> '" + Native("shown") +
                                 "'; echo 14202 >&0\n");
    EXPECT_EQ(WithDialogs(program,
                          [] {
                              std::string evaluated;
                              auto const count = [&](char const* inName) {
                                  evaluated += inName;
                                  return false;
                              };
                              for (int i = 0; i < 3; ++i) {
                                  BRN_ASSERT(count("a"));
                                  BRN_ASSERT((std::is_same_v<int, long>));
                                  BRN_ASSERT_MESSAGE(count("b"), std::string("message"));
                                  BRN_ASSERT_MESSAGE(true, (count("c"), "not evaluated"));
                              }
                              return evaluated;
                          }),
              "ababab");
    EXPECT_EQ(ContentOf("shown"), "x\nx\nx\n") << "once for each place that failed";
}

} // namespace

} // namespace brindle::debug
