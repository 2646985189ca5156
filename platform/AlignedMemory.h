#pragma once

#include <cstddef>

namespace brindle::platform {

/// Allocates from the heap, aligned to `inAlignment`, a power of two from 8 up. Returns null if
/// there is no memory; a request for 0 bytes gets a block too. Any thread may call.
[[nodiscard]] void* AllocateAligned(std::size_t inSize, std::size_t inAlignment) noexcept;

/// Frees such a block, or any other block of the heap. Null does nothing.
void FreeAligned(void* inBlock) noexcept;

/// Zeroed pages straight from the system, aligned to `inAlignment`. Both are multiples of the
/// page's size, and powers of two. Null if there are none. Any thread may call.
[[nodiscard]] void* AllocatePages(std::size_t inSize, std::size_t inAlignment) noexcept;

/// Gives pages back to the system, which has their memory at once. False if the system cannot
/// split its record of the address space any further: the pages then stay the caller's, without
/// memory, and are zero again when they are touched next.
[[nodiscard]] bool FreePages(void* inPages, std::size_t inSize) noexcept;

/// Called before every allocation, which fails if the filter returns false; for tests of what
/// happens without memory. Null lets every allocation through.
using AllocationFilter = bool (*)(std::size_t inSize);
void SetAllocationFilter(AllocationFilter inFilter) noexcept;

} // namespace brindle::platform
