#pragma once

#include <brindle/Export.h>

/// An allocator for small blocks that are freed with their size.
///
///     void* const block = SmallBlockAllocator::Allocate(sizeof(Event));
///     SmallBlockAllocator::Dispose(block, sizeof(Event));
namespace brindle::utility::SmallBlockAllocator {

/// Allocates a block of at least `inSize` bytes: up to 8192 bytes from the smallest size class that
/// holds it, above that from the heap. Blocks of the classes 4, 8 and 24 are aligned to 4, 8 and 8
/// bytes, all others to 16. Any thread may call.
///
/// Without memory it throws `std::bad_alloc` up to 8192 bytes and returns null above. While another
/// thread is making the very first call, the heap serves every size, and the result is null.
[[nodiscard]] BRN_API void* Allocate(unsigned int inSize);

/// Frees a block. `inSize` is the size that was passed to `Allocate`. Null does nothing. Any thread
/// may call, not only the one that allocated the block. A block that came from the heap goes back
/// to the heap.
BRN_API void Dispose(void* inBlock, unsigned int inSize);

/// The number of bytes that a request of `inSize` really gets.
BRN_API unsigned int GetActualAllocationSize(unsigned int inSize);

/// Returns cached blocks to their chunks. Freed blocks of up to 128 bytes, and of 1024, are cached
/// by the thread that freed them, at most 32 KiB of each size, and by the process for its other
/// threads, at most 256 KiB of each size. This empties the caches of the calling thread and of the
/// process; a thread's cache is emptied when it ends. Any thread may call.
BRN_API void ReleaseStock();

/// Reserved for statistics, of which none are kept.
struct BRN_API Metrics {
    struct Snapshot {};

    /// Always returns false and leaves the snapshot as it is.
    static bool GetSnapshot(Snapshot& outSnapshot);
};

} // namespace brindle::utility::SmallBlockAllocator
