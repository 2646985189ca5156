#pragma once

#include <cstdint>

namespace brindle::utility {

/// The memory of a chunk of one of the three sizes: a block of a class of chunks, or of the heap.
/// Null, or `std::bad_alloc`, if there is none.
void* AllocateChunkMemory(std::uint32_t inSize);
void DisposeChunkMemory(void* inMemory, std::uint32_t inSize) noexcept;

} // namespace brindle::utility
