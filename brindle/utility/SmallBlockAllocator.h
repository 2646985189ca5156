#pragma once

#include <brindle/Export.h>

namespace brindle::utility::SmallBlockAllocator {

/// A block of at least `inSize` bytes, up to 8192 from the smallest size class that holds it,
/// beyond that from the heap. Blocks of classes 4, 8 and 24 are aligned to 4, 8 and 8 bytes, all
/// others to 16. Null if a request above 8192 bytes finds no memory; `std::bad_alloc` for smaller
/// ones. Any thread may call.
BRN_API void* Allocate(unsigned int inSize);

/// Gives a block back. `inSize` is the size that it was asked for with. Null does nothing. Any
/// thread may call, whichever thread the block came from.
BRN_API void Dispose(void* inBlock, unsigned int inSize);

/// The number of bytes that a request of this size really gets.
BRN_API unsigned int GetActualAllocationSize(unsigned int inSize);

} // namespace brindle::utility::SmallBlockAllocator
