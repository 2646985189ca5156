#pragma once

#include "utility/src/memory/Depot.h"
#include "utility/src/memory/SizeClasses.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <new>
#include <type_traits>

/// The managers of all size classes, and the depots of those that keep a chunk. Constructed at
/// first use, never destroyed.
namespace brindle::utility::Managers {

enum class State : std::uint32_t { kNotStarted, kInProgress, kReady };

extern std::atomic<State> S_state;
using Storage = std::aligned_storage_t<sizeof(ChunkedAllocator), 64>;
extern std::array<Storage, SizeClasses::kCount> S_storage;
using DepotStorage = std::aligned_storage_t<sizeof(Depot), 64>;
extern std::array<DepotStorage, SizeClasses::kStocked> S_depots;

[[nodiscard]] bool Initialize() noexcept;

/// Constructs them if no thread has begun to. Returns false while another thread constructs them,
/// and for good if that failed: the heap then serves every request.
[[nodiscard]] inline bool AreReady() noexcept {
    return S_state.load(std::memory_order_acquire) == State::kReady || Initialize();
}

/// The manager of a class, and its depot. May be called only once they are ready.
inline ChunkedAllocator& Of(std::size_t inClass) noexcept {
    return *std::launder(reinterpret_cast<ChunkedAllocator*>(&S_storage[inClass]));
}

inline Depot& DepotOf(std::size_t inClass) noexcept {
    return *std::launder(reinterpret_cast<Depot*>(&S_depots[inClass]));
}

} // namespace brindle::utility::Managers
