#pragma once

#include <cstddef>

namespace brindle::platform {

/// Allocates from the heap, aligned to `inAlignment`, a power of two from 8 up. Returns null if
/// there is no memory; a request for 0 bytes gets a block too. Any thread may call.
[[nodiscard]] void* AllocateAligned(std::size_t inSize, std::size_t inAlignment) noexcept;

/// Frees such a block, or any other block of the heap. Null does nothing.
void FreeAligned(void* inBlock) noexcept;

/// Called before every allocation, which fails if the filter returns false; for tests of what
/// happens without memory. Null lets every allocation through.
using AllocationFilter = bool (*)(std::size_t inSize);
void SetAllocationFilter(AllocationFilter inFilter) noexcept;

} // namespace brindle::platform
