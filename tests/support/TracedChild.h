#pragma once

#include <csignal>
#include <functional>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brindle::tests {

/// The end of a child process whose system calls were traced.
struct TracedEnd {
    bool wasTraced =
        false;      ///< false if processes may not be traced here; the work did not run then
    int status = 0; ///< what the work returned, or minus the signal that ended it
};

/// Runs the work, which returns 0 to 255, in a child process, also if it executes another program.
/// Calls `inOnCall` in this process at the entry and the exit of each system call that the main
/// thread of the child makes.
inline TracedEnd
RunTraced(std::function<int()> const& inWork,
          std::function<void(pid_t, __ptrace_syscall_info const&)> const& inOnCall) {
    pid_t const child = ::fork();
    if (child == 0) {
        if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) {
            ::_exit(1);
        }
        ::raise(SIGSTOP);
        ::_exit(inWork());
    }
    int status = 0;
    auto const options = PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL;
    if (::waitpid(child, &status, WUNTRACED) != child || !WIFSTOPPED(status) ||
        ::ptrace(PTRACE_SETOPTIONS, child, nullptr, options) != 0) {
        return {};
    }
    for (int signal = 0;;) {
        ::ptrace(PTRACE_SYSCALL, child, nullptr, signal);
        ::waitpid(child, &status, 0);
        if (!WIFSTOPPED(status)) {
            return {true, WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status)};
        }
        bool const isCall = WSTOPSIG(status) == (SIGTRAP | 0x80);
        signal = isCall || WSTOPSIG(status) == SIGTRAP ? 0 : WSTOPSIG(status);
        if (isCall) {
            __ptrace_syscall_info info{};
            ::ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof info, &info);
            inOnCall(child, info);
        }
    }
}

} // namespace brindle::tests
