#include "tests/debug/DialogTests.h"

#include <brindle/utility/ThreadSafeMessageDialog.h>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <future>
#include <optional>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <thread>

namespace brindle::debug {

namespace {

/// A process with a pseudo-terminal of its own.
class AtTerminal {
public:
    explicit AtTerminal(std::function<int()> const& inWork) {
        mProcess = ::forkpty(&mMaster, nullptr, nullptr, nullptr);
        if (mProcess == 0) {
            ::_exit(inWork());
        }
    }
    AtTerminal(AtTerminal const&) = delete;
    AtTerminal& operator=(AtTerminal const&) = delete;
    ~AtTerminal() {
        ::close(mMaster);
        ::waitpid(mProcess, nullptr, 0); // unless `Wait` has done that
    }

    bool Exists() const { return mProcess > 0; }

    /// Reads what it writes until that ends with the text, or for ever if it never does.
    std::string ReadUntil(std::string const& inEnd) {
        std::string text;
        for (char byte = 0; ::read(mMaster, &byte, 1) == 1;) {
            text += byte;
            if (text.size() >= inEnd.size() &&
                text.compare(text.size() - inEnd.size(), inEnd.size(), inEnd) == 0) {
                break;
            }
        }
        return text;
    }

    void Type(std::string const& inText) {
        EXPECT_EQ(::write(mMaster, inText.data(), inText.size()),
                  static_cast<ssize_t>(inText.size()));
    }

    int Wait() {
        ReadUntil("never");
        int status = -1;
        ::waitpid(mProcess, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

private:
    int mMaster = -1;
    pid_t mProcess = -1;
};

class TerminalQuestion : public tests::DialogTests {
protected:
    void SetUp() override {
        if (!AtTerminal([] { return 0; }).Exists()) {
            GTEST_SKIP() << "this machine has no pseudo-terminals";
        }
    }

    static void Prepare() {
        ::unsetenv("DISPLAY");
        ::unsetenv("WAYLAND_DISPLAY");
        DebugDatabase::SetDisableFileWrites(true);
        DebugDatabase::Instance().SetEntry(tests::AsUTF8("assert.enabled"), tests::AsUTF8("true"));
    }
};

TEST_F(TerminalQuestion, ALetterAnswersAndTheStandardStreamsAreLeftAlone) {
    struct {
        char const* typed;
        int result;
    } const cases[] = {{"d\n", 0},   {"i\n", 3},  {"A\n", 4},        {" s\n", 4},
                       {"k\n", 255}, {"\x04", 3}, {"\x03", -SIGINT}, {"debug\n", 0}};
    for (auto const& [typed, result] : cases) {
        SCOPED_TRACE(typed);
        AtTerminal terminal([] {
            Prepare();
            // A line that was typed before the question does not answer it.
            pollfd line{STDIN_FILENO, POLLIN, 0};
            ::poll(&line, 1, -1);
            // The other end sees an error while nobody has the terminal open.
            static_cast<void>(::dup(STDIN_FILENO));
            int const nothing = ::open("/dev/null", O_RDWR);
            for (int const stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
                ::dup2(nothing, stream);
            }
            return DisplayAssert("heading", "body\x1B[2J\r\n");
        });
        terminal.Type("k\n");
        EXPECT_EQ(terminal.ReadUntil("> "),
                  "k\r\n\r\nNo Client Name Debug Event\r\nheading\r\n\r\nbody\uFFFD[2J\r\n\r\n"
                  "  d  Debug\r\n  i  Ignore Once\r\n  a  Ignore Always\r\n"
                  "  s  Disable Asserts\r\n  k  Kill Process\r\n> ");
        terminal.Type("c\n"); // there is nothing to copy with
        terminal.ReadUntil("\n> ");
        terminal.Type(typed);
        EXPECT_EQ(terminal.Wait(), result);
    }
}

TEST_F(TerminalQuestion, ARawTerminalGetsItsSettingsBack) {
    AtTerminal terminal([] {
        Prepare();
        termios raw{};
        ::cfmakeraw(&raw);
        ::tcsetattr(STDIN_FILENO, TCSANOW, &raw);
        ::tcgetattr(STDIN_FILENO, &raw);
        utility::ThreadSafeMessageDialog("[file-1]\r\n");
        termios after{};
        ::tcgetattr(STDIN_FILENO, &after);
        return after.c_lflag == raw.c_lflag && after.c_iflag == raw.c_iflag ? 7 : 1;
    });
    EXPECT_NE(terminal.ReadUntil("> ").find("[file-1]\r\n\r\n  c  Continue\r\n"),
              std::string::npos);
    terminal.Type("c\r");
    EXPECT_EQ(terminal.Wait(), 7);
}

TEST_F(TerminalQuestion, TwoThreadsAskOneAfterTheOther) {
    AtTerminal terminal([] {
        Prepare();
        auto other = std::async(std::launch::async, [] { return DisplayAssert("one", "body"); });
        return DisplayAssert("one", "body") * 10 + other.get();
    });
    for (int i = 0; i < 2; ++i) {
        terminal.ReadUntil("> ");
        std::this_thread::sleep_for(std::chrono::milliseconds(50)); // for the other one to intrude
        terminal.Type("x\n"); // no answer: the same thread asks again, not the other one
        EXPECT_EQ(terminal.ReadUntil("> "), "x\r\n> ");
        terminal.Type("i\n");
    }
    EXPECT_EQ(terminal.Wait(), 33);
}

TEST_F(TerminalQuestion, ABackgroundProcessDoesNotAsk) {
    AtTerminal terminal([] {
        Prepare();
        pid_t const child = ::fork();
        if (child == 0) {
            ::setpgid(0, 0);
            ::_exit(DisplayAssert("heading", "body"));
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        return WEXITSTATUS(status);
    });
    EXPECT_EQ(terminal.Wait(), 3);
}

} // namespace

} // namespace brindle::debug
