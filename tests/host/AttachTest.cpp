#include "tests/host/Command.h"
#include "tests/support/Environment.h"

#include <brindle/console/Command.h>
#include <brindle/console/CommandRegistry.h>
#include <brindle/console/Console.h>
#include <brindle/console/Listen.h>
#include <brindle/threads/AsyncThreadedExecutor.h>

#include <atomic>
#include <stdexcept>

namespace brindle::host {

namespace {

std::atomic<bool> S_terminates{false}; // what the command "player.end" does

class End : public console::Command {
public:
    using Command::Command;
    void Execute(UTF16String const&, UTF16OutputStream& ioOut) override {
        ioOut << u"ends\r\n";
        if (S_terminates) {
            console::Terminate();
        }
        throw std::runtime_error("too late");
    }
};

console::Command* MakeEnd(UTF16String const& inName, UTF16String const& inHelp) {
    return new End(inName, inHelp);
}

/// The test is the program that listens.
class Attach : public tests::Command {
protected:
    void SetUp() override {
        console::CommandRegistry::RegisterCommand(u"player.end"_utf16, u"player.end"_utf16,
                                                  MakeEnd);
        S_terminates = false;
    }
    void TearDown() override { console::Terminate(); }

    static console::Listener Listen(UTF16String const& inName) {
        auto listener = console::Listen(inName, threads::CreateAsyncThreadedExecutor(
                                                    "commands", 1, threads::kThreadPriorityNormal));
        EXPECT_TRUE(listener.IsListening()) << listener.Failure();
        return listener;
    }
    Outcome RunPiped(std::string const& inName, std::string const& inLines) const {
        Fill("lines", inLines);
        return Run("console --attach=" + inName + " <lines");
    }

    std::string const mPid = std::to_string(::getpid());
    tests::Environment const mSettings{{{"XDG_RUNTIME_DIR", mTemporary.Native()},
                                        {"XDG_STATE_HOME", mTemporary.Native()},
                                        {"LC_ALL", "C"}}};
};

TEST_F(Attach, ListsAndFindsWhoListens) {
    Expect("console --list");
    auto const one = Listen(u"two words"_utf16);
    auto const two = Listen(u"caf\u00E9\n"_utf16);
    Expect("console --list", mPid + "  caf\u00E9\\n\n" + mPid + "  two words\n");
    EXPECT_EQ(RunPiped("'two words'", "player.end\n").output, "ends\n");
    ExpectFailures({
        {"console --attach=two", "two: nobody listens under this name; --list names who does"},
        {"console --attach=" + mPid,
         mPid + ": more than one listens: " + mPid + " caf\u00E9\\n, " + mPid + " two words"},
    });
    ExpectWrongUsage("console",
                     {"--list --attach=a", "--list script", "--attach=a b c", "--attach"});
}

TEST_F(Attach, RunsLinesOfAPipeUpToOneThatIsNoCommand) {
    auto const listener = Listen(u"a"_utf16);
    auto const outcome = RunPiped(mPid, "help\n\nplayer.end\n# nothing\n nope now\nplayer.end\n");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "Currently installed commands.\n-----------------------------\n"
                              "player.end\n\nends\n");
    EXPECT_EQ(outcome.errors, "brindle: -: line 3: too late\n"
                              "brindle: -: line 5: 'nope' is no command; 'help' lists them\n");
    S_terminates = true;
    auto const ended = RunPiped("a", "player.end\nplayer.end\n");
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.output, "");
    EXPECT_EQ(ended.errors,
              "brindle: -: line 1: the program has ended, or has closed the connection\n");
}

} // namespace

} // namespace brindle::host
