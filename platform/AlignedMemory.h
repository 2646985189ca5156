#pragma once

#include <cstddef>

namespace brindle::platform {

/// Memory of the heap, aligned to `inAlignment`, a power of two from 8 up. Null if there is none; a
/// request of 0 bytes gets a block too. Any thread may call.
void* AllocateAligned(std::size_t inSize, std::size_t inAlignment) noexcept;

/// Gives it back, and any other block of the heap. Null does nothing.
void FreeAligned(void* inBlock) noexcept;

/// Zeroed pages straight from the system, aligned to `inAlignment`. Both are multiples of the
/// page's size, and powers of two. Null if there are none. Any thread may call.
void* AllocatePages(std::size_t inSize, std::size_t inAlignment) noexcept;

/// Gives pages back to the system, which has their memory at once. False if the system cannot
/// split its record of the address space any further: the pages then stay the caller's, without
/// memory, and are zero again when they are touched next.
bool FreePages(void* inPages, std::size_t inSize) noexcept;

/// Asked before every allocation, which it refuses by false. For tests of what happens without
/// memory; null lets everything through.
using AllocationFilter = bool (*)(std::size_t inSize);
void SetAllocationFilter(AllocationFilter inFilter) noexcept;

} // namespace brindle::platform
