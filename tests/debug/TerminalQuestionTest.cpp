#include "tests/support/InPreferences.h"
#include "tests/support/PseudoTerminal.h"

#include <brindle/debug/Asserts.h>
#include <brindle/debug/DebugDatabase.h>
#include <brindle/utility/ThreadSafeMessageDialog.h>

#include <fcntl.h>
#include <future>
#include <thread>

namespace brindle::debug {

namespace {

class TerminalQuestion : public tests::InPreferences {
protected:
    void SetUp() override {
        if (!tests::PseudoTerminal::AreThere()) {
            GTEST_SKIP() << "this machine has no pseudo-terminals";
        }
    }

    static int Display() {
        DebugDatabase::Instance().SetEntry("assert.enabled"_utf8, "true"_utf8);
        return DisplayAssert("heading", "body\x1B[2J\r\n");
    }

    tests::Environment const mNoDisplay{
        {{"DISPLAY", std::nullopt}, {"WAYLAND_DISPLAY", std::nullopt}}};
};

TEST_F(TerminalQuestion, ALetterAnswersAndTheStandardStreamsAreLeftAlone) {
    std::pair<char const*, int> const cases[] = {{"d\n", 0},        {"i\n", 3},    {"A\n", 4},
                                                 {" s\n", 4},       {"k\n", 255},  {"\x04", 3},
                                                 {"\x03", -SIGINT}, {"debug\n", 0}};
    for (auto const& [typed, result] : cases) {
        SCOPED_TRACE(typed);
        tests::PseudoTerminal terminal([] {
            // A line that was typed before the question does not answer it.
            pollfd line{STDIN_FILENO, POLLIN, 0};
            ::poll(&line, 1, -1);
            // The other end sees an error while nobody has the terminal open.
            static_cast<void>(::dup(STDIN_FILENO));
            int const nothing = ::open("/dev/null", O_RDWR);
            for (int const stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
                ::dup2(nothing, stream);
            }
            return Display();
        });
        terminal.Type("k\n");
        EXPECT_EQ(terminal.ReadUntil("> "),
                  "k\r\n\r\nNo Client Name Debug Event\r\nheading\r\n\r\nbody\uFFFD[2J\r\n\r\n"
                  "  d  Debug\r\n  i  Ignore Once\r\n  a  Ignore Always\r\n"
                  "  s  Disable Asserts\r\n  k  Kill Process\r\n> ");
        terminal.Type("c\n"); // there is nothing to copy with
        terminal.Expect("\n> ");
        terminal.Type(typed);
        EXPECT_EQ(terminal.Wait(), result);
    }
}

TEST_F(TerminalQuestion, ARawTerminalGetsItsSettingsBack) {
    tests::PseudoTerminal terminal([] {
        termios raw{};
        ::cfmakeraw(&raw);
        ::tcsetattr(STDIN_FILENO, TCSANOW, &raw);
        ::tcgetattr(STDIN_FILENO, &raw);
        utility::ThreadSafeMessageDialog("[file-1]\r\n");
        termios after{};
        ::tcgetattr(STDIN_FILENO, &after);
        return after.c_lflag == raw.c_lflag && after.c_iflag == raw.c_iflag ? 7 : 1;
    });
    terminal.Expect("[file-1]\r\n\r\n  c  Continue\r\n> ");
    terminal.Type("c\r");
    EXPECT_EQ(terminal.Wait(), 7);
}

TEST_F(TerminalQuestion, TwoThreadsAskOneAfterTheOther) {
    tests::PseudoTerminal terminal([] {
        auto other = std::async(std::launch::async, Display);
        return Display() * 10 + other.get();
    });
    for (int i = 0; i < 2; ++i) {
        terminal.Expect("> ");
        std::this_thread::sleep_for(std::chrono::milliseconds(50)); // for the other one to intrude
        terminal.Type("x\n"); // no answer: the same thread asks again, not the other one
        EXPECT_EQ(terminal.ReadUntil("> "), "x\r\n> ");
        terminal.Type("i\n");
    }
    EXPECT_EQ(terminal.Wait(), 33);
}

TEST_F(TerminalQuestion, ABackgroundProcessDoesNotAsk) {
    tests::PseudoTerminal terminal([] {
        tests::ChildProcess child([] {
            ::setpgid(0, 0);
            return Display();
        });
        return child.Wait();
    });
    EXPECT_EQ(terminal.Wait(), 3);
}

} // namespace

} // namespace brindle::debug
