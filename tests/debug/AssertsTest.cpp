#include <brindle/debug/Asserts.h>

#include "debug/src/question/DialogQuestion.h"
#include "platform/Process.h"
#include "tests/debug/RecordingHandler.h"
#include "tests/support/InPreferences.h"

#include <brindle/config/ClientIdentity.h>
#include <brindle/config/Localizer.h>
#include <brindle/debug/DebugDatabase.h>
#include <brindle/utility/ThreadSafeMessageDialog.h>

#include <gtest/gtest.h>

#include <thread>

namespace brindle::debug {

namespace {

/// In these tests another program stands for the one that shows the dialogs.
class Asserts : public tests::InPreferences {
protected:
    /// A shell script, whose standard input is the channel to the library.
    std::string Program(std::string const& inScript) const {
        Fill("dialog", "#!/bin/bash\n" + inScript);
        std::filesystem::permissions(Native("dialog"), std::filesystem::perms::owner_all);
        return Native("dialog");
    }

    /// Reads the whole request, keeps it, notes that it was shown, and answers.
    static std::string Script(std::string const& inAnswer) {
        return "cat > request; echo >> shown; echo " + inAnswer + " >&0\n";
    }
    std::string Answering(std::string const& inAnswer) const { return Program(Script(inAnswer)); }

    /// Does the work in a process of its own, which has a display, asserts that are switched on and
    /// no terminal. Returns its text.
    std::string WithDialogs(std::string const& inProgram,
                            std::function<std::string()> const& inWork) const {
        return tests::InProcess([&] {
            ::setsid();
            tests::Environment const display{{{"DISPLAY", ":0"}}};
            std::filesystem::current_path(mTemporary.Native());
            DebugDatabase::SetDisableFileWrites(true);
            DebugDatabase::Instance().SetEntry("assert.enabled"_utf8, "true"_utf8);
            SetDialogProgram(inProgram);
            return inWork();
        });
    }
    static std::string Display() { return std::to_string(DisplayAssert("heading", "body")); }

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

TEST_F(Asserts, AreTracedAndOtherwiseSilentUntilTheyAreSwitchedOn) {
    auto const program = Answering("14200");
    std::pair<std::string, char const*> const cases[] = {{"", "3 false"},
                                                         {"TRUE", "3 TRUE"},
                                                         {"true false", "3 true false"},
                                                         {" true\r", "0  true\r"}};
    std::string const traced = "@ <Assert> <0> heading\r\n|@ <Assert> <0> body\r\n|";
    for (auto const& [value, expected] : cases) {
        auto const result = WithDialogs(program, [text = tests::AsUTF8(value)] {
            auto& database = DebugDatabase::Instance();
            database.Clear();
            text.empty() ? void() : database.SetEntry("assert.enabled"_utf8, text);
            tests::RecordingHandler handler;
            auto const shown = Display() + ' ';
            return handler.texts + shown +
                   tests::Narrow(database.GetEntry("assert.enabled"_utf8, {}));
        });
        EXPECT_EQ(result, traced + expected);
    }
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
    struct {
        std::string script;
        char const* results; // of two asserts
        std::size_t shown = 2;
    } const cases[] = {
        {Script("14200"), "0 0"},
        {Script("14201"), "3 3"},
        {Script("14202"), "4 4"},
        {Script("14203"), "4 4", 1}, // no dialog is shown any more
        {Script("14204"), "ended with 255", 1},
        {Script("14205"), "-1 -1"}, // no such button
        {Script("no display"), "3 3"},
        {Script(""), "0 0"},
        {Script("14201") + "kill -9 $$", "3 3"},
        {"kill -9 $$", "0 0", 0},
        {"exit 1", "0 0", 0},
    };
    for (auto const& [script, results, shown] : cases) {
        SCOPED_TRACE(script);
        Fill("shown", "");
        auto const result = WithDialogs(Program(script), [] {
            auto const first = Display();
            return first + ' ' + Display();
        });
        EXPECT_EQ(result, results);
        EXPECT_EQ(ContentOf("shown").size(), shown);
    }
}

TEST_F(Asserts, WhereNothingCanBeShownTheyAreIgnoredOnce) {
    auto const program = Answering("14200");
    EXPECT_EQ(WithDialogs(program, [] { return ::unsetenv("DISPLAY"), Display(); }), "3");
    Fill("dialog", "no program");
    for (auto const& unusable : {program, Native("missing"), Native("")}) {
        EXPECT_EQ(WithDialogs(unusable, Display), "3") << unusable;
    }
}

/// How many descriptors this process has open, and how many children.
std::ptrdiff_t Remains() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}) +
           (::waitpid(-1, nullptr, WNOHANG) != -1 ? 1 : 0);
}

TEST_F(Asserts, WorkInAnyProcessAndLeaveNothingBehind) {
    auto const program = Program(
        "cat > /dev/null\n"
        "{ grep -E 'Sig(Blk|Ign)' /proc/self/status; ls /proc/$$/fd; } > state\necho 14202 >&0\n");
    auto const waitForAll = [] {
        std::thread([] {
            for (;;) {
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
        {"children are not waited for", [] { std::signal(SIGCHLD, SIG_IGN); }},
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
    EXPECT_EQ(WithDialogs(Program("exec echo 14202 >&0\n"), work), "4");
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
    std::string const localised =
        "Reel<$$$/private/brindle/debug/DefaultAssertDialogTitle=Reel Debug Event>|heading|"
        "body|14205*@0<$$$/private/brindle/debug/DefaultAssertDialog/CopyButton=Copy>";
    EXPECT_EQ(Shown().substr(0, localised.size()), localised);
    EXPECT_EQ(show(true, ""), "-1") << "the localiser throws";
}

TEST_F(Asserts, AViolatedContractIsShownAndTraced) {
    auto const traced = WithDialogs(Answering("14200"), [] {
        tests::RecordingHandler handler;
        static_cast<void>(BreakAfterContractDialog("a", "file.cpp", 7));
        return handler.texts;
    });
    EXPECT_EQ(traced, "@ <Message> <0> [file.cpp-7]\r\n|");
    EXPECT_EQ(Shown(), "No Client Name Debug Event|No Client Name has encountered an error.|"
                       "[file.cpp-7]\n|14200*Continue");
}

constexpr int Checked(int inValue) {
    return BRN_ASSERT(inValue > 0), inValue;
}

static_assert(Checked(1) == 1);

TEST_F(Asserts, TheMacroIgnoresEachPlaceByItself) {
    auto const evaluated = WithDialogs(Answering("14202"), [] {
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
