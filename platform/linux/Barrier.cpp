#include "platform/Barrier.h"

#include <linux/membarrier.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace brindle::platform {

std::atomic<bool> S_isLightBarrierFree{false};

namespace {

bool Membarrier(int inCommand) noexcept {
    return ::syscall(SYS_membarrier, inCommand, 0, 0) == 0;
}

} // namespace

void FullFence() noexcept {
    __sync_synchronize();
}

void PrepareBarriers() noexcept {
    // A copy of the process inherits the registration.
    if (Membarrier(MEMBARRIER_CMD_REGISTER_PRIVATE_EXPEDITED) &&
        Membarrier(MEMBARRIER_CMD_PRIVATE_EXPEDITED)) {
        S_isLightBarrierFree.store(true, std::memory_order_relaxed);
    }
}

void HeavyBarrier() noexcept {
    FullFence();
    if (S_isLightBarrierFree.load(std::memory_order_relaxed)) {
        // It was granted once, so it is granted for good.
        Membarrier(MEMBARRIER_CMD_PRIVATE_EXPEDITED);
    }
}

} // namespace brindle::platform
