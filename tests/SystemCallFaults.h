#pragma once

#include <functional>

namespace brindle::tests {

/// What is to happen to one system call of a process.
struct SystemCallFault {
    enum Kind { kKillBefore, kKillAfter, kRefuse } kind;
    int error = 0; ///< the `errno` of a refusal
    int call = 1;  ///< which one, from 1; refusals count only calls that may fail
};

struct FaultedRun {
    bool hasHappened = false;
    long call = -1; ///< the number of the call, as in `SYS_fsync`
    int status = 0; ///< what the work returned, or minus the signal that ended it
};

/// Runs the work in a child process, with its threads and what it executes in its place, and lets
/// the fault happen; it does not if the work makes fewer calls. The work returns 0 to 255. Refusals
/// never happen on processors where calls cannot be taken back.
FaultedRun RunWithFault(std::function<int()> const& inWork, SystemCallFault const& inFault);

} // namespace brindle::tests
