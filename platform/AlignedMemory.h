#pragma once

#include <cstddef>

namespace brindle::platform {

/// Memory of the heap, aligned to `inAlignment`, a power of two from 8 up. Null if there is none; a
/// request of 0 bytes gets a block too. Any thread may call.
void* AllocateAligned(std::size_t inSize, std::size_t inAlignment) noexcept;

/// Gives it back, and any other block of the heap. Null does nothing.
void FreeAligned(void* inBlock) noexcept;

/// Asked before every allocation, which it refuses by false. For tests of what happens without
/// memory; null lets everything through.
using AllocationFilter = bool (*)(std::size_t inSize);
void SetAllocationFilter(AllocationFilter inFilter) noexcept;

} // namespace brindle::platform
