#include "tests/host/Command.h"
#include "tests/support/Environment.h"
#include "tests/support/PseudoTerminal.h"

#include <brindle/console/Command.h>
#include <brindle/console/CommandRegistry.h>
#include <brindle/console/Console.h>
#include <brindle/console/Listen.h>
#include <brindle/threads/AsyncThreadedExecutor.h>

#include <atomic>
#include <stdexcept>

namespace brindle::host {

namespace {

class Console : public tests::Command {
protected:
    /// Runs the console with these lines on standard input.
    Outcome RunPiped(std::string const& inLines, std::string const& inWords = "") const {
        Fill("lines", inLines);
        return Run("console " + inWords + " <lines");
    }

    tests::Environment const mSettings{{{"XDG_CONFIG_HOME", mTemporary.Native()},
                                        {"XDG_RUNTIME_DIR", mTemporary.Native()},
                                        {"XDG_STATE_HOME", Native("state")},
                                        {"TERM", "xterm"},
                                        {"LC_ALL", "C"}}};
};

class ConsoleAtATerminal : public Console {
protected:
    void SetUp() override {
        if (!tests::PseudoTerminal::AreThere()) {
            GTEST_SKIP() << "no pseudo-terminals here";
        }
    }

    struct Step {
        char const* keys;
        char const* answer;
    };
    /// Types and reads at the terminal of a new console, which then ends with this status.
    static void ExpectSession(std::vector<Step> const& inSteps, int inStatus) {
        tests::PseudoTerminal terminal(
            [] { return ::execl(BRINDLE_COMMAND, "brindle", "console", nullptr); });
        terminal.Expect("brindle> ");
        for (auto const& step : inSteps) {
            SCOPED_TRACE(step.keys);
            terminal.TypeRaw(step.keys);
            terminal.Expect(step.answer);
        }
        EXPECT_EQ(terminal.Wait(), inStatus);
        EXPECT_TRUE(terminal.IsCooked());
    }
};

std::atomic<bool> S_terminates{false}; // what the command "player.end" does

struct End : console::Command {
    using Command::Command;
    void Execute(UTF16String const&, UTF16OutputStream& ioOut) override {
        ioOut << u"ends\r\n";
        if (S_terminates) {
            console::Terminate();
        }
        throw std::runtime_error("too late");
    }
};

/// The test is the program that listens.
class AttachedConsole : public Console {
protected:
    void SetUp() override {
        auto const make = [](auto const& inName, auto const& inHelp) -> console::Command* {
            return new End(inName, inHelp);
        };
        console::CommandRegistry::RegisterCommand(u"player.end"_utf16, u"player.end"_utf16, make);
        S_terminates = false;
    }
    void TearDown() override { console::Terminate(); }

    static console::Listener Listen(UTF16String const& inName) {
        return console::Listen(inName, threads::CreateAsyncThreadedExecutor(
                                           "commands", 1, threads::kThreadPriorityNormal));
    }

    std::string const mPid = std::to_string(::getpid());
};

TEST_F(Console, RunsScriptsUpToALineThatIsNoCommand) {
    auto const piped =
        RunPiped("\xEF\xBB\xBF# a comment\r\n\n  debug.set a = b\r\n\tdebug.get a\nn\xC3\xB6pe 1\n"
                 "debug.get b");
    EXPECT_EQ(piped.status, 1);
    EXPECT_EQ(piped.output, "a = b\n");
    EXPECT_EQ(piped.errors, "brindle: -: line 5: 'n\xC3\xB6pe' is no command; 'help' lists them\n");

    Fill("script", "debug.get a\nQUIT now\nnope\n");
    auto const script = RunPiped("", "script");
    EXPECT_EQ(script.status, 0);
    EXPECT_EQ(script.output, "a = b\n") << "it was kept";
    EXPECT_EQ(script.errors, "");

    for (auto const& text : {std::string("\xFF"), std::string("\0b", 2)}) {
        auto const noText = RunPiped("\ndebug.get " + text + "\n");
        EXPECT_EQ(noText.output, "");
        EXPECT_EQ(noText.errors, "brindle: -: line 2: not a text in UTF-8\n");
    }
    EXPECT_EQ(RunPiped("", "missing").errors, "brindle: missing: no such file or directory\n");
    ExpectWrongUsage("console", {"a b", "--nonsense"});
}

TEST_F(Console, ReportsWhatACommandThrowsAndGoesOn) {
    std::filesystem::create_directories(Native("brindle/Debug Database.txt"));
    auto const outcome = RunPiped("debug.set a=b\ndebug.get c\n");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "c = \n");
    EXPECT_EQ(outcome.errors.find("brindle: -: line 1: "), 0u) << outcome.errors;
}

TEST_F(ConsoleAtATerminal, EditsLinesAndDropsOldHistory) {
    std::string lines;
    for (int i = 0; i <= 2000; ++i) {
        lines += "debug.get " + std::to_string(i) + '\n';
    }
    std::filesystem::create_directories(Native("state/brindle"));
    auto const history = Native("state/brindle/console_history");
    Fill("state/brindle/console_history", lines);
    ExpectSession({{"\033[A\r", "2000 = \r\n"},
                   {"deb\t", "ug."},
                   {"\t", "debug.clear  debug.get  debug.list  debug.set"},
                   {"s\tk\xC3\xA9y=1\r", "et k\xC3\xA9y=1\r\n"},
                   {"debug.get k\t\r", "k\xC3\xA9y = 1\r\n"},
                   {"nonsense\003", "^C\r\nbrindle> "},
                   {"nope\r", "brindle: 'nope' is no command; 'help' lists them\r\n"},
                   {"debug.set e=\026\033[2J\r", "\r\n"},
                   {"debug.get e\r", "e = \\u001b[2J\r\n"},
                   {"q\t\r", "uit"}},
                  0);
    EXPECT_EQ(ContentOf(history),
              lines.substr(lines.find("debug.get 1001")) +
                  "debug.set k\xC3\xA9y=1\ndebug.get k\xC3\xA9y\nnope\ndebug.set e=\033[2J\n"
                  "debug.get e\nquit\n")
        << "dropped lines are not kept";
    EXPECT_EQ(std::filesystem::status(history).permissions(), std::filesystem::perms(0600));
}

TEST_F(ConsoleAtATerminal, NeedsNoPlaceForItsHistory) {
    Fill("state", "a file");
    ExpectSession({{"debug.get a\r", "a = \r\n"}, {"\034", ""}}, -SIGQUIT); // Ctrl-backslash
    EXPECT_EQ(ContentOf("state"), "a file");
}

TEST_F(AttachedConsole, ListsAndFindsWhoListens) {
    Expect("console --list");
    auto const one = Listen(u"two words"_utf16);
    auto const two = Listen(u"caf\u00E9\n"_utf16);
    Expect("console --list", mPid + "  caf\u00E9\\n\n" + mPid + "  two words\n");
    EXPECT_EQ(RunPiped("player.end\n", "--attach='two words'").output, "ends\n");
    ExpectFailures({
        {"console --attach=two", "two: nobody listens under this name; --list names who does"},
        {"console --attach=" + mPid,
         mPid + ": more than one listens: " + mPid + " caf\u00E9\\n, " + mPid + " two words"},
    });
    ExpectWrongUsage("console",
                     {"--list --attach=a", "--list script", "--attach=a b c", "--attach"});
}

TEST_F(AttachedConsole, RunsLinesOfAPipeUpToOneThatIsNoCommand) {
    auto const listener = Listen(u"a"_utf16);
    auto const outcome =
        RunPiped("help\n\nplayer.end\n# nothing\n nope now\nplayer.end\n", "--attach=" + mPid);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "Currently installed commands.\n-----------------------------\n"
                              "player.end\n\nends\n");
    EXPECT_EQ(outcome.errors, "brindle: -: line 3: too late\n"
                              "brindle: -: line 5: 'nope' is no command; 'help' lists them\n");
    S_terminates = true;
    auto const ended = RunPiped("player.end\nplayer.end\n", "--attach=a");
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.output, "");
    EXPECT_EQ(ended.errors,
              "brindle: -: line 1: the program has ended, or has closed the connection\n");
}

} // namespace

} // namespace brindle::host
