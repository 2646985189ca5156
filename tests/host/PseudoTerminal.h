#pragma once

#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace brindle::tests {

/// A program whose terminal is this test.
class PseudoTerminal {
public:
    PseudoTerminal() : mMaster(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        if (mMaster != -1 && (::grantpt(mMaster) != 0 || ::unlockpt(mMaster) != 0)) {
            ::close(mMaster);
            mMaster = -1;
        }
    }
    PseudoTerminal(PseudoTerminal const&) = delete;
    PseudoTerminal& operator=(PseudoTerminal const&) = delete;
    ~PseudoTerminal() {
        if (mChild > 0) {
            ::kill(mChild, SIGKILL);
            ::waitpid(mChild, nullptr, 0);
        }
        ::close(mMaster);
    }

    /// False where the machine has no pseudo-terminals.
    bool IsThere() const { return mMaster != -1; }

    /// Runs a command of the shell there.
    void Start(std::string const& inCommand) {
        std::string const slave = ::ptsname(mMaster);
        mChild = ::fork();
        if (mChild == 0) {
            ::setsid();
            int const terminal = ::open(slave.c_str(), O_RDWR);
            ::ioctl(terminal, TIOCSCTTY, 0);
            for (int stream = 0; stream < 3; ++stream) {
                ::dup2(terminal, stream);
            }
            ::execl("/bin/sh", "sh", "-c", ("exec " + inCommand).c_str(), nullptr);
            ::_exit(127);
        }
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

    /// The exit status of the program, for which this waits; above 255 for the end by a signal.
    int Status() {
        WaitFor("\0 never printed");
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
    int mMaster;
    pid_t mChild = -1;
    std::string mUnread;
};

} // namespace brindle::tests
