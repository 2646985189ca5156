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
    // The child of a fork inherits the registration.
    if (Membarrier(MEMBARRIER_CMD_REGISTER_PRIVATE_EXPEDITED) &&
        Membarrier(MEMBARRIER_CMD_PRIVATE_EXPEDITED)) {
        S_isLightBarrierFree.store(true, std::memory_order_relaxed);
    }
}

void HeavyBarrier() noexcept {
    FullFence();
    if (S_isLightBarrierFree.load(std::memory_order_relaxed)) {
        // The call was granted at the start, and is relied on from then on.
        Membarrier(MEMBARRIER_CMD_PRIVATE_EXPEDITED);
    }
}

} // namespace brindle::platform
