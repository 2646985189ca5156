#include "platform/Threads.h"

#include "platform/Process.h"

#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>

namespace brindle::platform {

namespace {

constexpr int kNicenessStep = 5;

/// A niceness belongs to a thread on this system. The main thread has the one with which the
/// process was started, unless it has asked for another before the first call.
int NormalNiceness() noexcept {
    static int const normal = getpriority(PRIO_PROCESS, ProcessId());
    return normal;
}

} // namespace

std::uint32_t ProcessorCount() noexcept {
    cpu_set_t processors;
    if (sched_getaffinity(0, sizeof(processors), &processors) == 0) {
        return static_cast<std::uint32_t>(std::max(1, CPU_COUNT(&processors)));
    }
    return static_cast<std::uint32_t>(std::max(1L, sysconf(_SC_NPROCESSORS_ONLN)));
}

void SetThreadPriority(std::int32_t inPriority) noexcept {
    // Threads inherit also the policy of the one that started them, be it idle or real-time.
    int const policy = inPriority <= -15 ? SCHED_IDLE : SCHED_OTHER;
    if (sched_getscheduler(0) != policy) {
        sched_param const parameters{};
        sched_setscheduler(0, policy, &parameters);
    }
    setpriority(PRIO_PROCESS, ThreadId(),
                std::min(19, NormalNiceness() - kNicenessStep * inPriority));
}

SignalsBlocked::SignalsBlocked() noexcept {
    static_assert(sizeof(sigset_t) <= kMostBytes);
    sigset_t all;
    sigfillset(&all);
    // These are the thread's own faults; a host may have a handler for them.
    for (int const fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP}) {
        sigdelset(&all, fault);
    }
    pthread_sigmask(SIG_SETMASK, &all, reinterpret_cast<sigset_t*>(mOldMask));
}

SignalsBlocked::~SignalsBlocked() {
    pthread_sigmask(SIG_SETMASK, reinterpret_cast<sigset_t const*>(mOldMask), nullptr);
}

bool IsThreadBelowNormal() noexcept {
    return sched_getscheduler(0) == SCHED_IDLE ||
           getpriority(PRIO_PROCESS, ThreadId()) > NormalNiceness();
}

} // namespace brindle::platform
