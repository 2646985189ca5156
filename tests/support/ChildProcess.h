#pragma once

#include <csignal>
#include <exception>
#include <functional>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace brindle::tests {

/// A process that does the work and ends with what it returns, or is killed with this object.
class ChildProcess {
public:
    explicit ChildProcess(std::function<int()> const& inWork) : ChildProcess(::fork(), inWork) {}
    /// Of a process that was just begun, which is this one if its id is 0.
    ChildProcess(pid_t inId, std::function<int()> const& inWork) : mId(inId) {
        if (mId == 0) {
            ::_exit(inWork());
        }
    }
    ChildProcess(ChildProcess const&) = delete;
    ChildProcess& operator=(ChildProcess const&) = delete;
    ~ChildProcess() { Kill(); }

    pid_t Id() const { return mId; }

    void Kill() {
        if (mId > 0) {
            ::kill(mId, SIGKILL);
            Wait();
        }
    }
    /// Its exit status, or minus the signal that ended it.
    int Wait() {
        int status = 0;
        ::waitpid(std::exchange(mId, -1), &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

private:
    pid_t mId;
};

/// Does the work in a process of its own, in which the library has kept nothing yet. Returns its
/// text, or that it threw or how else it ended.
inline std::string InProcess(std::function<std::string()> const& inWork) {
    int ends[2];
    if (::pipe(ends) != 0) {
        return "no pipe";
    }
    ChildProcess child([&] {
        std::string text;
        try {
            text = inWork();
        } catch (std::exception const& problem) {
            text = std::string("threw ") + problem.what();
        }
        return ::write(ends[1], text.data(), text.size()) == static_cast<ssize_t>(text.size()) ? 0
                                                                                               : 1;
    });
    ::close(ends[1]);
    std::string text;
    char piece[4096];
    for (ssize_t count = 0; (count = ::read(ends[0], piece, sizeof piece)) > 0;) {
        text.append(piece, static_cast<std::size_t>(count));
    }
    ::close(ends[0]);
    int const status = child.Wait();
    return status == 0 ? text : text + "ended with " + std::to_string(status);
}

} // namespace brindle::tests
