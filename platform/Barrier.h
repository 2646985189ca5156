#pragma once

#include <atomic>

namespace brindle::platform {

/// An asymmetric pair of barriers for two sides, one of which runs far more often. Each side
/// writes, executes its barrier, and reads what the other side writes: at least one of them sees
/// the other's write. The light barrier costs next to nothing, the heavy one a system call.
///
/// Where the system has no such call, both are full fences.
void LightBarrier() noexcept;
void HeavyBarrier() noexcept;

/// Asks the system once, before the first use of the barriers, whether the call is granted. Until
/// then, and if it is refused, `LightBarrier` is a full fence.
void PrepareBarriers() noexcept;

extern std::atomic<bool> S_isLightBarrierFree;

/// A full fence that the thread sanitizer does not see, and need not: no happens-before relation
/// that it checks depends on this fence.
void FullFence() noexcept;

inline void LightBarrier() noexcept {
    if (S_isLightBarrierFree.load(std::memory_order_relaxed)) {
        std::atomic_signal_fence(std::memory_order_seq_cst);
    } else {
        FullFence();
    }
}

} // namespace brindle::platform
