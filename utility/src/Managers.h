#pragma once

#include "utility/src/SizeClasses.h"

#include <atomic>
#include <cstddef>
#include <cstdint>

/// The managers of all size classes: made at first use, never destroyed.
namespace brindle::utility::Managers {

enum class State : std::uint32_t { kNotStarted, kInProgress, kReady };

extern std::atomic<State> S_state;
using Storage = std::aligned_storage_t<sizeof(ChunkedAllocator), 64>;
extern std::array<Storage, SizeClasses::kCount> S_storage;

bool Initialize() noexcept;

/// Makes the managers if nobody has begun to. False while another thread makes them, and for good
/// if that failed: the heap then serves every request.
inline bool AreReady() noexcept {
    return S_state.load(std::memory_order_acquire) == State::kReady || Initialize();
}

/// The manager of a class. Only when they are ready.
inline ChunkedAllocator& Of(std::size_t inClass) noexcept {
    return *std::launder(reinterpret_cast<ChunkedAllocator*>(&S_storage[inClass]));
}

} // namespace brindle::utility::Managers
