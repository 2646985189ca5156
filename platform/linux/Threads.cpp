#include "platform/Threads.h"

#include "platform/Process.h"

#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>

namespace brindle::platform {

namespace {

constexpr int kNicenessStep = 5;

} // namespace

std::uint32_t ProcessorCount() noexcept {
    cpu_set_t processors;
    if (sched_getaffinity(0, sizeof(processors), &processors) == 0) {
        return static_cast<std::uint32_t>(std::max(1, CPU_COUNT(&processors)));
    }
    return static_cast<std::uint32_t>(std::max(1L, sysconf(_SC_NPROCESSORS_ONLN)));
}

void SetThreadPriority(std::int32_t inPriority) noexcept {
    bool const isIdle = inPriority <= -15;
    if (isIdle || sched_getscheduler(0) == SCHED_IDLE) {
        sched_param const parameters{};
        sched_setscheduler(0, isIdle ? SCHED_IDLE : SCHED_OTHER, &parameters);
    }
    // A niceness belongs to a thread here, and the main thread's is what the process was started
    // with, until the main thread asks for another.
    static int const normal = getpriority(PRIO_PROCESS, ProcessId());
    setpriority(PRIO_PROCESS, ThreadId(), std::min(19, normal - kNicenessStep * inPriority));
}

} // namespace brindle::platform
