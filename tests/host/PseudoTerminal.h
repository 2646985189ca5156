#pragma once

#include <poll.h>
#include <pty.h>
#include <string>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace brindle::tests {

/// A program whose terminal is this test.
class PseudoTerminal {
public:
    PseudoTerminal() = default;
    PseudoTerminal(PseudoTerminal const&) = delete;
    PseudoTerminal& operator=(PseudoTerminal const&) = delete;
    ~PseudoTerminal() {
        if (mChild > 0) {
            ::kill(mChild, SIGKILL);
            ::waitpid(mChild, nullptr, 0);
        }
        ::close(mMaster);
    }

    /// Runs a command of the shell. False where the machine has no pseudo-terminals.
    bool Start(std::string const& inCommand) {
        mChild = ::forkpty(&mMaster, nullptr, nullptr, nullptr);
        if (mChild == 0) {
            ::execl("/bin/sh", "sh", "-c", ("exec " + inCommand).c_str(), nullptr);
            ::_exit(127);
        }
        return mChild > 0;
    }

    /// Types when the program waits for single keys: before that, a key might be a signal.
    void Type(std::string const& inKeys) const {
        for (int wait = 0; wait < 30'000 && IsCooked(); ++wait) {
            ::poll(nullptr, 0, 1);
        }
        static_cast<void>(!::write(mMaster, inKeys.data(), inKeys.size()));
    }

    /// Reads up to the end of this text. False if the program ends, or half a minute passes,
    /// without it; `Unread` tells what there was.
    bool WaitFor(std::string const& inText) {
        for (std::size_t at; (at = mUnread.find(inText)) == std::string::npos;) {
            pollfd source{mMaster, POLLIN, 0};
            char piece[4096];
            ssize_t const count =
                ::poll(&source, 1, 30'000) == 1 ? ::read(mMaster, piece, sizeof piece) : -1;
            if (count <= 0) {
                return false;
            }
            mUnread.append(piece, static_cast<std::size_t>(count));
        }
        mUnread.erase(0, mUnread.find(inText) + inText.size());
        return true;
    }
    std::string const& Unread() const { return mUnread; }

    /// Waits for the end of the program. Its exit status; above 255 if a signal ended it.
    int Status() {
        WaitFor("\x01 never printed");
        int status = 0;
        ::waitpid(mChild, &status, 0);
        mChild = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 256 + WTERMSIG(status);
    }

    /// Whether typed characters are echoed and collected to lines, as for a shell.
    bool IsCooked() const {
        termios state{};
        ::tcgetattr(mMaster, &state);
        return (state.c_lflag & (ICANON | ECHO | ISIG)) == (ICANON | ECHO | ISIG);
    }

private:
    int mMaster = -1;
    pid_t mChild = -1;
    std::string mUnread;
};

} // namespace brindle::tests
