#pragma once

#include <brindle/Export.h>

namespace brindle::utility::SmallBlockAllocator {

/// A block of at least `inSize` bytes, up to 8192 from the smallest size class that holds it,
/// beyond that from the heap. Blocks of classes 4, 8 and 24 are aligned to 4, 8 and 8 bytes, all
/// others to 16. Where there is no memory: null above 8192 bytes, `std::bad_alloc` up to there; in
/// the moment in which another thread makes the allocator's first call the heap serves every size,
/// and there it is null. Any thread may call.
BRN_API void* Allocate(unsigned int inSize);

/// Gives a block back. `inSize` is the size that it was asked for with. Null does nothing. Any
/// thread may call, whichever thread the block came from. A block of the heap's goes back to the
/// heap.
BRN_API void Dispose(void* inBlock, unsigned int inSize);

/// The number of bytes that a request of this size really gets.
BRN_API unsigned int GetActualAllocationSize(unsigned int inSize);

/// Blocks up to 128 bytes, and of 1024, are kept for the next request by the thread that disposed
/// of them, and by the process for its other threads: at most 32 KiB of a size by a thread, 256 KiB
/// by the process. This gives back what the calling thread and the process keep; what a thread
/// keeps goes back when it ends. Any thread may call.
BRN_API void ReleaseStock();

/// Reserved for figures of use, of which none are kept.
struct BRN_API Metrics {
    struct Snapshot {};

    /// False: the snapshot stays as it is.
    static bool GetSnapshot(Snapshot& outSnapshot);
};

} // namespace brindle::utility::SmallBlockAllocator
