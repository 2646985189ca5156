#pragma once

#include <brindle/Export.h>

#include <cstdint>

/// Blocks that are freed with their size, for objects that are created and destroyed often:
///
///     void* const block = SmallBlockAllocator::Allocate(sizeof(Item));
///     SmallBlockAllocator::Dispose(block, sizeof(Item));
///
/// A thread allocates from chunks of its own, and a block that another thread disposes of returns
/// to its chunk. Memory that has become free goes back to the system, except for at most 8 MiB and,
/// for each thread and size, the chunk that the thread allocates from.
namespace brindle::utility::SmallBlockAllocator {

/// Returns a block of at least `inSize` bytes: up to 8192 from the smallest size class that holds
/// it, above that from the system's heap. Blocks of classes 4, 8 and 24 are aligned to 4, 8 and 8
/// bytes, all others to 16. Without memory, throws `std::bad_alloc` up to 8192 bytes and returns
/// null above. While another thread makes the allocator's first call, the system's heap serves
/// every size, and the result without memory is null. Any thread may call, also before `main`,
/// after it, and while the thread ends.
BRN_API void* Allocate(unsigned int inSize);

/// Frees a block. `inSize` is the size with which it was requested. Null does nothing. Any thread
/// may call, whichever thread allocated the block. A block of the system's heap goes back there.
BRN_API void Dispose(void* inBlock, unsigned int inSize);

/// The number of bytes that a block for a request of this size has.
BRN_API unsigned int GetActualAllocationSize(unsigned int inSize);

/// Gives back to the system the memory that the calling thread and the process keep for the next
/// request. It is never necessary to call this; it makes figures comparable.
BRN_API void ReleaseStock();

/// What the allocator holds at a moment. Counted when it is asked for, at no cost before.
struct Figures {
    std::uint64_t blocksInUse = 0; ///< allocated to clients
    std::uint64_t bytesInUse = 0;  ///< of these blocks
    std::uint64_t blocksHeld = 0;  ///< the capacity of the chunks
    std::uint64_t bytesHeld = 0;   ///< of the chunks
    /// The pieces of memory that are divided into blocks of this size.
    std::uint64_t chunksHeld = 0;
};

/// The figures of the class that serves requests of a size; all zero above 8192, except for 66080.
/// A block that another thread is just allocating or freeing may or may not count as in use. Any
/// thread may call; waits for each of the other threads to leave the slow path of the allocator.
BRN_API Figures GetFigures(unsigned int inSize);

/// The sums over all classes. Here `bytesHeld` is the address space that was obtained from the
/// system, whether it was touched or not.
BRN_API Figures GetFigures();

/// Reserved for usage statistics, of which none are kept.
struct BRN_API Metrics {
    struct Snapshot {};

    /// Returns false and leaves the snapshot unchanged.
    static bool GetSnapshot(Snapshot& outSnapshot);
};

} // namespace brindle::utility::SmallBlockAllocator
