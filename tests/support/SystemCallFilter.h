#pragma once

#include <cstddef>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>

namespace brindle::tests {

/// From now on the system answers one call, such as `SYS_eventfd2`, with an action such as
/// `SECCOMP_RET_ERRNO | EMFILE`, to the calling thread and those that it starts. False if it
/// refuses to.
inline bool FilterSystemCall(long inCall, unsigned int inAction) {
    sock_filter steps[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned int>(inCall), 0, 1),
        BPF_STMT(BPF_RET | BPF_K, inAction), BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)};
    sock_fprog const program{4, steps};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

} // namespace brindle::tests
