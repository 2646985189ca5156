#pragma once

#include <atomic>

namespace brindle::platform {

/// A pair of barriers for two sides of which one comes by far more often. Each side writes, passes
/// its barrier, and reads what the other side writes: at least one of them sees the other's write.
/// The light barrier costs next to nothing, the heavy one a call of the system.
///
/// Where the system has no such call, both are full fences.
void LightBarrier() noexcept;
void HeavyBarrier() noexcept;

/// Asks the system for the call, once, before the barriers are first used. Until then, and where it
/// is refused, `LightBarrier` is a full fence.
void PrepareBarriers() noexcept;

extern std::atomic<bool> S_isLightBarrierFree;

/// A fence that the thread sanitizer, too, can do without: it orders nothing that the sanitizer
/// looks at.
void FullFence() noexcept;

inline void LightBarrier() noexcept {
    if (S_isLightBarrierFree.load(std::memory_order_relaxed)) {
        std::atomic_signal_fence(std::memory_order_seq_cst);
    } else {
        FullFence();
    }
}

} // namespace brindle::platform
