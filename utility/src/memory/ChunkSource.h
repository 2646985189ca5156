#pragma once

#include <cstdint>

namespace brindle::utility {

/// Allocates the memory of a chunk of one of the three sizes: a block of a class of chunks, or of
/// the heap. Without memory it returns null or throws `std::bad_alloc`.
[[nodiscard]] void* AllocateChunkMemory(std::uint32_t inSize);
void DisposeChunkMemory(void* inMemory, std::uint32_t inSize) noexcept;

} // namespace brindle::utility
