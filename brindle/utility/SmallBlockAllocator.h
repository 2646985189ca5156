#pragma once

#include <brindle/Export.h>

#include <cstdint>

/// Blocks that are freed with their size, for objects that come and go often:
///
///     void* const block = SmallBlockAllocator::Allocate(sizeof(Item));
///     SmallBlockAllocator::Dispose(block, sizeof(Item));
///
/// A thread allocates from chunks of its own, and blocks that another thread disposed of find their
/// way back to them. Memory that has become free goes back to the system, but for at most 8 MiB
/// and, for each thread and size, the chunk that the thread allocates from.
namespace brindle::utility::SmallBlockAllocator {

/// A block of at least `inSize` bytes, up to 8192 from the smallest size class that holds it,
/// beyond that from the heap. Blocks of classes 4, 8 and 24 are aligned to 4, 8 and 8 bytes, all
/// others to 16. Where there is no memory: null above 8192 bytes, `std::bad_alloc` up to there.
/// While another thread makes the allocator's first call, the heap serves every size, and there
/// the result is null. Any thread may call, also before `main`, after it, and while it ends.
BRN_API void* Allocate(unsigned int inSize);

/// Gives a block back. `inSize` is the size that it was asked for with. Null does nothing. Any
/// thread may call, whichever thread the block came from. A block of the heap goes back to the
/// heap.
BRN_API void Dispose(void* inBlock, unsigned int inSize);

/// The number of bytes that a request of this size really gets.
BRN_API unsigned int GetActualAllocationSize(unsigned int inSize);

/// Gives back to the system what the calling thread and the process keep for the next request.
/// Nobody needs to call this; it makes figures comparable.
BRN_API void ReleaseStock();

/// What the allocator holds at a moment. Costs nothing until it is asked for.
struct Figures {
    std::uint64_t blocksInUse = 0; ///< with clients
    std::uint64_t bytesInUse = 0;  ///< of these blocks
    std::uint64_t blocksHeld = 0;  ///< that the chunks have room for
    std::uint64_t bytesHeld = 0;   ///< of the chunks
    std::uint64_t chunksHeld = 0;
};

/// The figures of the class that serves requests of a size; none above 8192, but for 66080. Blocks
/// that other threads are about to take or to give back count as in use or not. Any thread may
/// call; waits for each of the other threads to leave the allocator.
BRN_API Figures GetFigures(unsigned int inSize);

/// The figures of all classes together. Here `bytesHeld` is what the system has given, in address
/// space, whether it was touched or not.
BRN_API Figures GetFigures();

/// Reserved for figures of use, of which none are kept.
struct BRN_API Metrics {
    struct Snapshot {};

    /// False: the snapshot stays as it is.
    static bool GetSnapshot(Snapshot& outSnapshot);
};

} // namespace brindle::utility::SmallBlockAllocator
