#pragma once

#include "tests/support/TracedChild.h"

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <sys/syscall.h>
#include <sys/user.h>

namespace brindle::tests {

/// What is to happen to one system call of a process.
struct SystemCallFault {
    enum Kind { kKillBefore, kKillAfter, kRefuse, kActBefore } kind;
    int error = 0; ///< the `errno` of a refusal
    int call = 1;  ///< which call, from 1; refusals count only calls that a disk can make fail
    std::function<void()> act = {}; ///< what somebody else does before the call
};

struct FaultedRun {
    bool hasHappened = false;
    long call = -1;    ///< the number of the call that it happened to, such as `SYS_fsync`
    std::string syncs; ///< the calls that decide what reaches the disk in which order, a letter
                       ///< each: w write, s sync, l link,
                       ///< r rename, S sync of a directory
    int status = 0;    ///< what the work returned, or minus the signal that ended it
};

/// False for calls that no full or damaged disk makes fail. Closing may report a failure, but
/// happens all the same.
inline bool MayFail(long inCall) {
    // `close` may report an error, but has closed the descriptor then.
    auto const never = {SYS_mmap,  SYS_munmap, SYS_mprotect, SYS_mremap,       SYS_exit_group,
                        SYS_brk,   SYS_getpid, SYS_gettid,   SYS_rt_sigaction, SYS_rt_sigprocmask,
                        SYS_futex, SYS_prctl,  SYS_madvise,  SYS_sigaltstack,  SYS_close};
    return std::find(never.begin(), never.end(), inCall) == never.end();
}

/// At the entry of a call, replaces it by one that does nothing; at its exit, sets the error that
/// it returns. False on processors for which this is not written.
inline bool Refuse(pid_t inProcess, bool inIsEntry, int inError) {
#if defined(__x86_64__)
    auto const place = inIsEntry ? offsetof(user, regs.orig_rax) : offsetof(user, regs.rax);
    return ptrace(PTRACE_POKEUSER, inProcess, place, inIsEntry ? -1L : -long{inError}) == 0;
#else
    return inProcess == 0 && inIsEntry && inError == 0;
#endif
}

/// The letter of a call in `FaultedRun::syncs`; empty for other calls.
inline std::string SyncLetter(pid_t inProcess, __ptrace_syscall_info const& inCall) {
    switch (static_cast<long>(inCall.entry.nr)) {
    case SYS_pwrite64:
        return "w";
    case SYS_linkat:
        return "l";
#ifdef SYS_renameat // where it is missing, SYS_renameat2 does the same
    case SYS_renameat:
#endif
    case SYS_renameat2:
        return "r";
    case SYS_fsync: {
        auto const descriptors = "/proc/" + std::to_string(inProcess) + "/fd/";
        bool const isDirectory =
            std::filesystem::is_directory(descriptors + std::to_string(inCall.entry.args[0]));
        return isDirectory ? "S" : "s";
    }
    default:
        return "";
    }
}

/// Runs the work, which returns 0 to 255, in a child process, also if it executes another program,
/// and makes the fault happen if the main thread makes as many calls.
inline FaultedRun RunWithFault(std::function<int()> const& inWork, SystemCallFault const& inFault) {
    FaultedRun run;
    int calls = 0;
    bool isStruck = false; // the call in progress is the one of the fault
    auto const onCall = [&](pid_t inProcess, __ptrace_syscall_info const& inCall) {
        bool const isEntry = inCall.op == PTRACE_SYSCALL_INFO_ENTRY;
        bool const isRefusal = inFault.kind == SystemCallFault::kRefuse;
        if (isEntry) {
            auto const number = static_cast<long>(inCall.entry.nr);
            run.syncs += SyncLetter(inProcess, inCall);
            if ((!isRefusal || MayFail(number)) && ++calls == inFault.call) {
                run.call = number;
                isStruck = true;
            }
        }
        if (isStruck && isRefusal) {
            run.hasHappened = Refuse(inProcess, isEntry, inFault.error);
        } else if (isStruck && inFault.kind == SystemCallFault::kActBefore) {
            if (isEntry) {
                inFault.act();
                run.hasHappened = true;
            }
        } else if (isStruck && isEntry == (inFault.kind == SystemCallFault::kKillBefore)) {
            run.hasHappened = kill(inProcess, SIGKILL) == 0;
        }
        isStruck = isStruck && isEntry;
    };
    TracedEnd const end = RunTraced(inWork, onCall);
    if (!end.wasTraced) {
        throw std::runtime_error("the system calls of a child cannot be traced here");
    }
    run.status = end.status;
    return run;
}

} // namespace brindle::tests
