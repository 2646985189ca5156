#include "tests/host/Command.h"
#include "tests/host/PseudoTerminal.h"

#include <sys/stat.h>

namespace brindle::host {

namespace {

class Console : public tests::Command {
protected:
    std::string Settings() const {
        return " XDG_CONFIG_HOME='" + Native("config") + "' XDG_STATE_HOME='" + Native("state") +
               "' TERM=xterm LC_ALL=C ";
    }

    /// Runs the console with these lines on standard input.
    Outcome RunPiped(std::string const& inLines, std::string const& inWords = "") const {
        Fill("lines", inLines);
        return Run("console " + inWords + " <lines", "export" + Settings() + "; ");
    }

    void SetUp() override { std::filesystem::create_directory(Native("config")); }
};

class ConsoleAtATerminal : public Console {
protected:
    void SetUp() override {
        if (!tests::PseudoTerminal().Start("true")) {
            GTEST_SKIP() << "no pseudo-terminals here";
        }
        Console::SetUp();
    }

    void Open(tests::PseudoTerminal& ioTerminal) const {
        ioTerminal.Start("env" + Settings() + BRINDLE_COMMAND " console");
        EXPECT_TRUE(ioTerminal.WaitFor("brindle> ")) << ioTerminal.Unread();
    }

    tests::PseudoTerminal mTerminal;
};

TEST_F(Console, RunsScriptsUpToALineThatIsNoCommand) {
    auto const piped =
        RunPiped("\xEF\xBB\xBF# a comment\r\n\n  debug.set a = b\r\n\tdebug.get a\nn\xC3\xB6pe 1\n"
                 "debug.get b");
    EXPECT_EQ(piped.status, 1);
    EXPECT_EQ(piped.output, "a = b\n");
    EXPECT_EQ(piped.errors, "brindle: -: line 5: 'n\xC3\xB6pe' is no command; 'help' lists them\n");

    Fill("script", "debug.get a\nquit\nnope\n");
    auto const script = RunPiped("", "script");
    EXPECT_EQ(script.status, 0);
    EXPECT_EQ(script.output, "a = b\n") << "it was kept";
    EXPECT_EQ(script.errors, "");

    auto const help = RunPiped("Help me\nQUIT now\nnope\n");
    EXPECT_EQ(help.output.find("Currently installed commands.\n-----------------------------\n"),
              0u);
    for (auto const& text : {std::string("\xFF"), std::string("\0b", 2)}) {
        auto const noText = RunPiped("\ndebug.get " + text + "\n");
        EXPECT_EQ(noText.output, "");
        EXPECT_EQ(noText.errors, "brindle: -: line 2: not a text in UTF-8\n");
    }
    EXPECT_EQ(RunPiped("", "missing").errors, "brindle: missing: no such file or directory\n");
    ExpectWrongUsage("console", {"a b", "--nonsense"});
}

TEST_F(Console, ReportsWhatACommandThrowsAndGoesOn) {
    std::filesystem::create_directories(Native("config/brindle/Debug Database.txt"));
    auto const outcome = RunPiped("debug.set a=b\ndebug.get c\n");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "c = \n");
    EXPECT_EQ(outcome.errors.find("brindle: -: line 1: "), 0u) << outcome.errors;
}

TEST_F(ConsoleAtATerminal, EditsLines) {
    struct Step {
        char const* keys;
        char const* answer;
    } const steps[] = {
        {"deb\t", "ug."},
        {"\t", "debug.clear  debug.get  debug.list  debug.set"},
        {"s\tk\xC3\xA9y=1\r", "et k\xC3\xA9y=1\r\n"},
        {"debug.get k\t\r", "k\xC3\xA9y = 1\r\n"},
        {"nonsense\003", "^C\r\nbrindle> "},
        {"nope\r", "brindle: 'nope' is no command; 'help' lists them\r\n"},
        {"debug.set e=\026\033[2J\r", "\r\n"},
        {"debug.get e\r", "e = \\u001b[2J\r\n"},
        {"q\t\r", "uit"},
    };
    Open(mTerminal);
    for (auto const& step : steps) {
        mTerminal.Type(step.keys);
        ASSERT_TRUE(mTerminal.WaitFor(step.answer)) << step.keys << ": " << mTerminal.Unread();
    }
    EXPECT_EQ(mTerminal.Status(), 0);
    EXPECT_TRUE(mTerminal.IsCooked());

    std::string const kHistory = "debug.set k\xC3\xA9y=1\ndebug.get k\xC3\xA9y\nnope\n"
                                 "debug.set e=\033[2J\ndebug.get e\nquit\n";
    auto const history = Native("state/brindle/console_history");
    EXPECT_EQ(ContentOf(history), kHistory) << "dropped lines are not kept";
    struct stat state {};
    ASSERT_EQ(::stat(history.c_str(), &state), 0);
    EXPECT_EQ(state.st_mode & 0777, 0600u);

    tests::PseudoTerminal again;
    Open(again);
    again.Type("\033[A\033[A\r"); // two lines up
    EXPECT_TRUE(again.WaitFor("e = \\u001b[2J\r\n")) << again.Unread();
    again.Type("\004");
    EXPECT_EQ(again.Status(), 0);
    EXPECT_EQ(ContentOf(history), kHistory + "debug.get e\n");
}

TEST_F(ConsoleAtATerminal, KeepsTheLastThousandLines) {
    std::string lines;
    for (int i = 0; i <= 2000; ++i) {
        lines += "debug.get " + std::to_string(i) + '\n';
    }
    std::filesystem::create_directories(Native("state/brindle"));
    Fill("state/brindle/console_history", lines);
    Open(mTerminal);
    mTerminal.Type("\033[A\r");
    EXPECT_TRUE(mTerminal.WaitFor("2000 = \r\n")) << mTerminal.Unread();
    mTerminal.Type("\004");
    EXPECT_EQ(mTerminal.Status(), 0);
    EXPECT_EQ(ContentOf("state/brindle/console_history"),
              lines.substr(lines.find("debug.get 1001")));
}

TEST_F(ConsoleAtATerminal, NeedsNoPlaceForItsHistory) {
    Fill("state", "a file");
    Open(mTerminal);
    mTerminal.Type("debug.get a\r");
    EXPECT_TRUE(mTerminal.WaitFor("a = \r\n")) << mTerminal.Unread();
    mTerminal.Type("\034"); // Ctrl-backslash
    EXPECT_EQ(mTerminal.Status(), 256 + SIGQUIT);
    EXPECT_TRUE(mTerminal.IsCooked());
    EXPECT_EQ(ContentOf("state"), "a file");
}

} // namespace

} // namespace brindle::host
