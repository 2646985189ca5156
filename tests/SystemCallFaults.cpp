#include "tests/SystemCallFaults.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <stdexcept>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brindle::tests {

namespace {

/// False for memory, signals, identity and the end: no disk makes them fail.
bool MayFail(long inCall) {
    constexpr std::array<long, 16> kNever{
        SYS_mmap,        SYS_munmap,       SYS_mprotect,       SYS_mremap,
        SYS_brk,         SYS_madvise,      SYS_futex,          SYS_getpid,
        SYS_gettid,      SYS_rt_sigaction, SYS_exit,           SYS_exit_group,
        SYS_sched_yield, SYS_prctl,        SYS_rt_sigprocmask, SYS_clock_nanosleep};
    return std::find(kNever.begin(), kNever.end(), inCall) == kNever.end();
}

/// Takes a call back that is about to begin, or says what one that was taken back returns.
bool SetRegister([[maybe_unused]] pid_t inThread, [[maybe_unused]] bool inIsEntry,
                 [[maybe_unused]] int inError) {
#if defined(__x86_64__)
    user_regs_struct registers{};
    if (ptrace(PTRACE_GETREGS, inThread, nullptr, &registers) != 0) {
        return false;
    }
    (inIsEntry ? registers.orig_rax : registers.rax) = -static_cast<unsigned long long>(inError);
    return ptrace(PTRACE_SETREGS, inThread, nullptr, &registers) == 0;
#else
    return false;
#endif
}

} // namespace

FaultedRun RunWithFault(std::function<int()> const& inWork, SystemCallFault const& inFault) {
    pid_t const child = fork();
    if (child == 0) {
        setpgid(0, 0);
        ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        kill(getpid(), SIGSTOP);
        _exit(inWork());
    }
    int status = 0;
    bool const isTraced = waitpid(child, &status, WUNTRACED) == child && WIFSTOPPED(status) &&
                          ptrace(PTRACE_SETOPTIONS, child, nullptr,
                                 PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL | PTRACE_O_TRACECLONE |
                                     PTRACE_O_TRACEEXEC) == 0;
    if (!isTraced) {
        throw std::runtime_error("the system calls of a child cannot be watched here");
    }

    FaultedRun run;
    int calls = 0;
    pid_t struck = 0;
    ptrace(PTRACE_SYSCALL, child, nullptr, 0);
    for (pid_t thread = 0; (thread = waitpid(-child, &status, __WALL)) > 0;) {
        if (!WIFSTOPPED(status)) {
            if (thread == child) {
                run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
            }
            continue;
        }
        int signal = WSTOPSIG(status);
        if (signal == (SIGTRAP | 0x80)) {
            __ptrace_syscall_info info{};
            ptrace(PTRACE_GET_SYSCALL_INFO, thread, sizeof info, &info);
            bool const isEntry = info.op == PTRACE_SYSCALL_INFO_ENTRY;
            auto const number = static_cast<long>(info.entry.nr);
            bool const counts =
                isEntry && (inFault.kind != SystemCallFault::kRefuse || MayFail(number));
            if (counts && ++calls == inFault.call) {
                run.call = number;
                struck = thread;
            }
            if (struck == thread) {
                bool const isNow = isEntry == (inFault.kind == SystemCallFault::kKillBefore);
                if (inFault.kind == SystemCallFault::kRefuse) {
                    run.hasHappened = SetRegister(thread, isEntry, isEntry ? 1 : inFault.error);
                } else if (isNow) {
                    run.hasHappened = true;
                    kill(child, SIGKILL);
                }
                struck = isEntry ? struck : 0;
            }
        }
        // Nothing is handed on but signals that are the work's own affair.
        bool const isOurs = (signal & 0x7F) == SIGTRAP || signal == SIGSTOP;
        ptrace(PTRACE_SYSCALL, thread, nullptr, isOurs ? 0 : signal);
    }
    return run;
}

} // namespace brindle::tests
