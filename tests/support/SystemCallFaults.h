#pragma once

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brindle::tests {

/// What is to happen to one system call of a process.
struct SystemCallFault {
    enum Kind { kKillBefore, kKillAfter, kRefuse, kActBefore } kind;
    int error = 0; ///< the `errno` of a refusal
    int call = 1;  ///< which one, from 1; refusals count only calls that a disk can make fail
    std::function<void()> act = {}; ///< what somebody else does before the call
};

struct FaultedRun {
    bool hasHappened = false;
    long call = -1;    ///< the number of the call that it happened to, as in `SYS_fsync`
    std::string syncs; ///< the calls that order what comes to the disk, a letter each: w write,
                       ///< s sync, l link, r rename, S sync of a directory
    int status = 0;    ///< what the work returned, or minus the signal that ended it
};

inline bool MayFail(long inCall) {
    auto const never = {SYS_mmap,  SYS_munmap, SYS_mprotect, SYS_mremap,       SYS_exit_group,
                        SYS_brk,   SYS_getpid, SYS_gettid,   SYS_rt_sigaction, SYS_rt_sigprocmask,
                        SYS_futex, SYS_prctl,  SYS_madvise,  SYS_sigaltstack};
    return std::find(never.begin(), never.end(), inCall) == never.end();
}

/// Takes back a call that begins, and at its end says what it returns; false where that is unknown.
inline bool Refuse(pid_t inProcess, bool inIsEntry, int inError) {
#if defined(__x86_64__)
    auto const place = inIsEntry ? offsetof(user, regs.orig_rax) : offsetof(user, regs.rax);
    return ptrace(PTRACE_POKEUSER, inProcess, place, inIsEntry ? -1L : -long{inError}) == 0;
#else
    return inProcess == 0 && inIsEntry && inError == 0;
#endif
}

/// Runs the work in a child process, also if it executes another program, and lets the fault
/// happen, if the main thread makes as many calls. The work returns 0 to 255.
inline FaultedRun RunWithFault(std::function<int()> const& inWork, SystemCallFault const& inFault) {
    pid_t const child = fork();
    if (child == 0) {
        ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        kill(getpid(), SIGSTOP);
        _exit(inWork());
    }
    int status = 0;
    auto const options = PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL;
    if (waitpid(child, &status, WUNTRACED) != child ||
        ptrace(PTRACE_SETOPTIONS, child, nullptr, options) != 0) {
        throw std::runtime_error("the system calls of a child cannot be watched here");
    }
    FaultedRun run;
    int calls = 0, signal = 0;
    for (bool isStruck = false;;) {
        ptrace(PTRACE_SYSCALL, child, nullptr, signal);
        waitpid(child, &status, 0);
        if (!WIFSTOPPED(status)) {
            run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
            return run;
        }
        bool const isCall = WSTOPSIG(status) == (SIGTRAP | 0x80);
        signal = isCall || WSTOPSIG(status) == SIGTRAP ? 0 : WSTOPSIG(status);
        if (!isCall) {
            continue;
        }
        __ptrace_syscall_info info{};
        ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof info, &info);
        bool const isEntry = info.op == PTRACE_SYSCALL_INFO_ENTRY;
        bool const isRefusal = inFault.kind == SystemCallFault::kRefuse;
        auto const number = static_cast<long>(info.entry.nr);
        if (isEntry && number == SYS_pwrite64) {
            run.syncs += 'w';
        } else if (isEntry && number == SYS_linkat) {
            run.syncs += 'l';
        } else if (isEntry && number == SYS_renameat) {
            run.syncs += 'r';
        } else if (isEntry && number == SYS_fsync) {
            auto const descriptors = "/proc/" + std::to_string(child) + "/fd/";
            bool const isDirectory =
                std::filesystem::is_directory(descriptors + std::to_string(info.entry.args[0]));
            run.syncs += isDirectory ? 'S' : 's';
        }
        if (isEntry && (!isRefusal || MayFail(number)) && ++calls == inFault.call) {
            run.call = number;
            isStruck = true;
        }
        if (isStruck && isRefusal) {
            run.hasHappened = Refuse(child, isEntry, inFault.error);
        } else if (isStruck && inFault.kind == SystemCallFault::kActBefore) {
            run.hasHappened = true;
            inFault.act();
            isStruck = false;
        } else if (isStruck && isEntry == (inFault.kind == SystemCallFault::kKillBefore)) {
            run.hasHappened = kill(child, SIGKILL) == 0;
        }
        isStruck = isStruck && isEntry;
    }
}

} // namespace brindle::tests
