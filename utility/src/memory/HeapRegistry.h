#pragma once

#include "utility/src/memory/ThreadHeap.h"

#include <atomic>
#include <cstdint>

/// The heaps of all threads. Constructed at the first use of the allocator, never destroyed.
namespace brindle::utility::HeapRegistry {

enum class State : std::uint32_t { kNotStarted, kInProgress, kReady };

extern std::atomic<State> S_state;

bool Initialize() noexcept;

/// Constructs the registry if no thread has started to. False while another thread constructs it,
/// and for ever if that failed: the system's heap then serves every request.
inline bool IsReady() noexcept {
    return S_state.load(std::memory_order_acquire) == State::kReady || Initialize();
}

// The following functions require `IsReady()`.

/// The calling thread's heap; a thread without one adopts or creates one. Null without memory, and
/// when the thread is ending and has abandoned its heap.
ThreadHeap* MineOrMade() noexcept;
/// The calling thread's heap, null if it has none.
ThreadHeap* MineOrNull() noexcept;

/// A block for a thread without a heap. Throws `std::bad_alloc`.
void* AllocateWithoutHeap(std::size_t inClass);

/// The sums over all heaps.
struct Total {
    ThreadHeap::Uses classes{};
    std::uint64_t bytesFromSystem = 0;
};
Total Count();

/// Gives back what the calling thread's heap and the process keep for the next request.
void Release();

} // namespace brindle::utility::HeapRegistry
