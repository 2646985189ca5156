#pragma once

#include <cstddef>

namespace brindle::platform {

/// Allocates from the heap, aligned to `inAlignment`, a power of two from 8 up. Returns null if
/// there is no memory; a request for 0 bytes gets a block too. Any thread may call.
[[nodiscard]] void* AllocateAligned(std::size_t inSize, std::size_t inAlignment) noexcept;

/// Frees such a block, or any other block of the heap. Null does nothing.
void FreeAligned(void* inBlock) noexcept;

/// Maps zeroed pages from the system, aligned to `inAlignment`. Size and alignment are powers of
/// two and multiples of the page size. Null if there is no memory. Any thread may call.
[[nodiscard]] void* AllocatePages(std::size_t inSize, std::size_t inAlignment) noexcept;

/// Unmaps pages. Their memory goes back to the system at once. False if the system cannot split its
/// record of the address space any further: the caller then still owns the addresses, without
/// memory, and the pages are zero when they are touched next.
[[nodiscard]] bool FreePages(void* inPages, std::size_t inSize) noexcept;

/// Called before every allocation, which fails if the filter returns false; for tests of behaviour
/// without memory. A null filter lets every allocation through.
using AllocationFilter = bool (*)(std::size_t inSize);
void SetAllocationFilter(AllocationFilter inFilter) noexcept;

} // namespace brindle::platform
