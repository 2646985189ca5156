#pragma once

#include "utility/src/memory/ThreadHeap.h"

#include <atomic>
#include <cstdint>

/// The heaps of all threads: made at the first use of the allocator, never destroyed.
namespace brindle::utility::HeapRegistry {

enum class State : std::uint32_t { kNotStarted, kInProgress, kReady };

extern std::atomic<State> S_state;

bool Initialize() noexcept;

/// Makes what the heaps share if nobody has begun to. False while another thread makes it, and for
/// good if that failed: the heap of the system then serves every request.
inline bool IsReady() noexcept {
    return S_state.load(std::memory_order_acquire) == State::kReady || Initialize();
}

// Only when it is ready:

/// The calling thread's heap, made if it has none. Null without memory, and when the thread has
/// given its heap up at its end.
ThreadHeap* MineOrMade() noexcept;
/// The calling thread's heap, null if it has none.
ThreadHeap* MineOrNull() noexcept;

/// A block for a thread without a heap. Throws `std::bad_alloc`.
void* AllocateWithoutHeap(std::size_t inClass);

/// What all heaps hold together.
struct Total {
    ThreadHeap::Uses classes{};
    std::uint64_t bytesFromSystem = 0;
};
Total Count();

/// Gives back what the calling thread and the process keep for the next request.
void Release();

} // namespace brindle::utility::HeapRegistry
