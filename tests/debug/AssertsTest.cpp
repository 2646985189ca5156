#include <brindle/debug/Asserts.h>

#include "debug/src/question/DialogQuestion.h"
#include "platform/Process.h"
#include "tests/debug/DialogTests.h"

#include <brindle/config/ClientIdentity.h>
#include <brindle/config/Localizer.h>
#include <brindle/debug/Trace.h>
#include <brindle/utility/ThreadSafeMessageDialog.h>

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <iterator>
#include <thread>

namespace brindle::debug {

namespace {

using tests::AsUTF8;

class Asserts : public tests::DialogTests {
protected:
    /// What the last dialog was asked to show.
    std::string Shown() const {
        auto const question = ReadRequest(ContentOf("request")).value_or(DialogQuestion());
        auto text = question.title + '|' + question.heading + '|' + question.body;
        for (auto const& each : question.buttons) {
            text += '|' + std::to_string(each.id) + (each.isDefault ? '*' : ' ') + each.label;
        }
        return text;
    }
};

/// The piece of a trace line that names category and volume.
std::string TracedAs(std::string const& inCategory) {
    return "<" + std::to_string(platform::ThreadId()) + "> <" + inCategory + "> <0> ";
}

TEST_F(Asserts, AreTracedAndOtherwiseSilentUntilTheyAreSwitchedOn) {
    auto const program = Answering("14200");
    for (std::string const value : {"", "false", "yes", "TRUE", "true false", "1"}) {
        auto const result = WithDialogs(program, [&] {
            auto& database = DebugDatabase::Instance();
            database.Clear();
            if (!value.empty()) {
                database.SetEntry(AsUTF8("assert.enabled"), AsUTF8(value));
            }
            tests::RecordingHandler handler;
            auto const shown = Display();
            auto const expected =
                TracedAs("Assert") + "heading\r\n" + TracedAs("Assert") + "body\r\n";
            return shown + (handler.Text() == expected ? " traced " : handler.Text()) +
                   tests::Narrow(database.GetEntry(AsUTF8("assert.enabled"), {}));
        });
        EXPECT_EQ(result, "3 traced " + (value.empty() ? "false" : value));
    }
    auto const editedByHand = WithDialogs(program, [] {
        DebugDatabase::Instance().SetEntry(AsUTF8("assert.enabled"), AsUTF8(" true\r"));
        return Display();
    });
    EXPECT_EQ(editedByHand, "0");
}

TEST_F(Asserts, TheBodyTellsWhatFailedWhere) {
    auto const process = "Process: " + platform::CommandLine() + "\r\n";
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
    auto const answering = [](std::string const& inAnswer) {
        return "#!/bin/sh\ncat > request; echo >> shown; echo " + inAnswer + " >&0\n";
    };
    struct {
        std::string program;
        char const* results; // of two asserts
        int shown = 2;
    } const cases[] = {
        {answering("14200"), "0 0"},
        {answering("14201"), "3 3"},
        {answering("14202"), "4 4"},
        {answering("14203"), "4 4", 1}, // no dialog is shown any more
        {answering("14204"), "... and ended with status 65280", 1},
        {answering("14205"), "-1 -1"},
        {answering("no such button"), "-1 -1"},
        {answering("no display"), "3 3"},
        {answering(""), "0 0"},
        {answering("14201") + "kill -9 $$", "3 3"},
        {"#!/bin/sh\nkill -9 $$", "0 0", 0},
        {"#!/bin/sh\nexit 1", "0 0", 0},
        {"no program", "3 3", 0},
    };
    for (auto const& [program, results, shown] : cases) {
        SCOPED_TRACE(program);
        Fill("shown", "");
        auto const result = WithDialogs(Program(program), [this] {
            std::filesystem::current_path(Native(""));
            auto const first = Display();
            return first + ' ' + Display();
        });
        EXPECT_EQ(result, results);
        EXPECT_EQ(ContentOf("shown").size(), static_cast<std::size_t>(shown));
    }
}

TEST_F(Asserts, WhereNothingCanBeShownTheyAreIgnoredOnce) {
    EXPECT_EQ(WithDialogs(Native("missing"), Display), "3");
    EXPECT_EQ(WithDialogs(Native(""), Display), "3") << "a directory";
    auto const program = Answering("14200");
    EXPECT_EQ(WithDialogs(program, [] { return ::unsetenv("DISPLAY"), Display(); }), "3");
}

TEST_F(Asserts, AHangingDialogIsEndedByTheDeveloper) {
    auto const program = Program("#!/bin/sh\necho $$ > '" + Native("pid") + "'\nexec sleep 1000\n");
    auto const result = WithDialogs(program, [&] {
        std::thread developer([&] {
            pid_t process = 0;
            while (process == 0) {
                std::ifstream(Native("pid")) >> process;
                std::this_thread::yield();
            }
            ::kill(process, SIGKILL);
        });
        auto const shown = Display();
        developer.join();
        return shown;
    });
    EXPECT_EQ(result, "0");
}

/// How many descriptors this process has open, and whether it has children.
std::string Remains() {
    auto const count = std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    bool const hasChildren = ::waitpid(-1, nullptr, WNOHANG) != -1;
    return std::to_string(count) + (hasChildren ? " and children" : "");
}

TEST_F(Asserts, WorkInAnyProcessAndLeaveNothingBehind) {
    auto const program =
        Program("#!/bin/bash\ncat > /dev/null\n"
                "{ grep -E 'Sig(Blk|Ign)' /proc/self/status; ls /proc/$$/fd; } > '" +
                Native("state") + "'\necho 14202 >&0\n");
    std::atomic<bool> isOver{false};
    auto const waitForAll = [&] {
        std::thread([&] {
            while (!isOver) {
                ::waitpid(-1, nullptr, 0);
            }
        }).detach();
    };
    auto const blockAll = [] {
        sigset_t all;
        ::sigfillset(&all);
        ::sigprocmask(SIG_SETMASK, &all, nullptr);
    };
    std::pair<char const*, std::function<void()>> const cases[] = {
        {"as it is", [] {}},
        {"children are not waited for", [] { std::signal(SIGCHLD, SIG_IGN); }},
        {"a signal is ignored", [] { std::signal(SIGUSR1, SIG_IGN); }},
        {"every signal is blocked", blockAll},
        {"standard streams are closed", [] { ::close(STDIN_FILENO), ::close(STDOUT_FILENO); }},
        {"an inherited descriptor", [] { static_cast<void>(::dup2(STDERR_FILENO, 9)); }},
        {"another thread waits for all children", waitForAll},
    };
    for (auto const& [name, prepare] : cases) {
        SCOPED_TRACE(name);
        auto const result = WithDialogs(program, [&, prepareIt = prepare] {
            prepareIt();
            auto const before = Remains();
            auto const shown = Display() + Display();
            isOver = true;
            return shown + (Remains() == before ? "" : " left something");
        });
        EXPECT_EQ(result, "44");
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
    EXPECT_NE(Shown().find('|' + body + '|'), std::string::npos);
    EXPECT_EQ(WithDialogs(Program("#!/bin/sh\nexec echo 14202 >&0\n"), work), "4");
}

/// Shows what it was asked for; it throws at an empty name.
class EchoingLocalizer : public config::Localizer {
public:
    UTF16String LocalizeString(char const* inLiteral) override {
        static_cast<void>(BreakAfterContractDialog("nested", "file", 1)); // nobody is asked
        if (config::GetClientName().empty()) {
            throw 1;
        }
        return tests::Wide("@0<" + std::string(inLiteral) + ">");
    }
};

TEST_F(Asserts, TheHostsLanguageIsSpoken) {
    auto const show = [this](bool inIsLocalized, char const* inName) {
        return WithDialogs(Answering("14200"), [=] {
            EchoingLocalizer localizer;
            config::Localizer::Set(inIsLocalized ? &localizer : nullptr);
            config::SetClientName(tests::Wide(inName));
            return Display();
        });
    };
    EXPECT_EQ(show(false, "Reel"), "0");
    EXPECT_EQ(Shown(), "Reel Debug Event|heading|body|14205*Copy|14200*Debug|14201 Ignore Once|"
                       "14202 Ignore Always|14203 Disable Asserts|14204 Kill Process");
    EXPECT_EQ(show(true, "Reel"), "0");
    EXPECT_EQ(Shown().substr(0, 158),
              "Reel<$$$/private/brindle/debug/DefaultAssertDialogTitle=Reel Debug Event>|heading|"
              "body|14205*@0<$$$/private/brindle/debug/DefaultAssertDialog/CopyButton=Copy>");
    EXPECT_EQ(show(true, ""), "-1") << "the localiser throws";
}

TEST_F(Asserts, AViolatedContractIsShownAndTraced) {
    auto const traced = WithDialogs(Answering("14200"), [] {
        tests::RecordingHandler handler;
        static_cast<void>(BreakAfterContractDialog("a", "file.cpp", 7));
        auto const expected = TracedAs("Message") + "[file.cpp-7]\r\n";
        return handler.Text() == expected ? "traced" : handler.Text();
    });
    EXPECT_EQ(traced, "traced");
    EXPECT_EQ(Shown(), "No Client Name Debug Event|No Client Name has encountered an error.|"
                       "[file.cpp-7]\n|14200*Continue");
}

constexpr int Checked(int inValue) {
    return BRN_ASSERT(inValue > 0), inValue;
}

static_assert(Checked(1) == 1);

TEST_F(Asserts, TheMacroIgnoresEachPlaceByItself) {
    auto const program =
        Program("#!/bin/sh\ncat > /dev/null; echo >> '" + Native("shown") + "'; echo 14202 >&0\n");
    auto const evaluated = WithDialogs(program, [] {
        std::string names;
        auto const fail = [&](char const* inName) { return names += inName, false; };
        for (int i = 0; i < 3; ++i) {
            BRN_ASSERT(fail("a"));
            BRN_ASSERT((std::is_same_v<int, long>));
            BRN_ASSERT_MESSAGE(fail("b"), std::string("message"));
            BRN_ASSERT_MESSAGE(true, (fail("c"), "not evaluated"));
        }
        return names;
    });
    EXPECT_EQ(evaluated, "ababab");
    EXPECT_EQ(ContentOf("shown").size(), 3u) << "once for each place that failed";
}

} // namespace

} // namespace brindle::debug
