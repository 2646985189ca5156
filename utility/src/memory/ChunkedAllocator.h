#pragma once

#include "threads/src/locks/FreezableMutex.h"
#include "threads/src/locks/ReadWriteLock.h"
#include "utility/src/memory/AllocatorInterface.h"
#include "utility/src/memory/ChunkSet.h"

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace brindle::utility {

/// The sizes of the chunks of a size class.
struct ChunkPlan {
    std::uint32_t blockSize;
    std::uint32_t firstChunkSize; ///< at first
    std::uint32_t
        secondChunkSize; ///< once the class holds this many bytes; `kLargeChunk` once it holds that
    bool keepOneChunk;   ///< whether the last chunk is kept when it is empty
};

/// The blocks of one size class, in chunks that are blocks of the classes of chunks.
///
/// Usually a block is taken or given back without a mutex, through the free list of its chunk,
/// under the shared side of the publish lock, which keeps the set of chunks unchanged. A thread
/// that changes the set holds the mutex and withdraws the set first; a thread that finds the set
/// withdrawn waits for the mutex. docs/concurrency/small-block-allocator.md has the proof.
class ChunkedAllocator : public AllocatorInterface {
public:
    explicit ChunkedAllocator(
        ChunkPlan const& inPlan); ///< throws what its locks and its memory throw
    ChunkedAllocator(ChunkedAllocator const&) = delete;
    ChunkedAllocator& operator=(ChunkedAllocator const&) = delete;

    void* Allocate(unsigned int inSize) final;
    bool Dispose(void* inBlock, unsigned int inSize) final;
    unsigned int BlockSize() final { return mPlan.blockSize; }

    /// Takes at least one block, and up to `inCount` as long as the chunk has free ones. Throws
    /// `std::bad_alloc`.
    [[nodiscard]] std::uint32_t AllocateSeveral(void** outBlocks, std::uint32_t inCount);
    /// Gives back blocks of this class.
    void DisposeSeveral(void* const* inBlocks, std::uint32_t inCount) noexcept;

    /// What the class holds. Exact while no other thread takes or gives.
    struct Census {
        std::size_t chunks;
        std::uint64_t bytes;
        std::uint32_t blocks;
        std::int32_t blocksInUse;
    };
    Census Count();

    /// Keeps all other threads out before a fork; lets them in again afterwards, in the parent and
    /// in the child.
    void CloseForFork() BRN_ACQUIRE(mMutex);
    void OpenInParent() BRN_RELEASE(mMutex);
    void OpenInChild() BRN_RELEASE(mMutex);

protected:
    ~ChunkedAllocator() = default;

private:
    class Withdrawal;
    struct Return {
        bool isForeign;  ///< whether a block was of no chunk here
        bool isPurgeDue; ///< whether a chunk that need not be kept became empty
    };

    std::uint32_t Take(void** outBlocks, std::uint32_t inCount);
    std::uint32_t TakeSlowly(void** outBlocks, std::uint32_t inCount);
    bool Give(void* const* inBlocks, std::uint32_t inCount);
    Return GiveTo(ChunkSet const& inChunks, void* const* inBlocks, std::uint32_t inCount) noexcept;
    void AddChunk() BRN_REQUIRES(mMutex);
    void Purge();
    void Withdraw() BRN_REQUIRES(mMutex);
    void Publish() BRN_REQUIRES(mMutex);

    ChunkPlan const mPlan;
    threads::FreezableMutex mMutex; // held to change the set of chunks
    // Null while the set changes or is empty. Changed under the mutex, read under the publish lock.
    std::atomic<ChunkSet*> mPublished{nullptr};
    threads::ReadWriteLock mPublishLock;
    ChunkSet mChunks;
    std::uint64_t mBytes BRN_GUARDED_BY(mMutex) = 0; // of the chunks
    // While it is set, the mutex is frozen by the thread that forks.
    bool mIsForking BRN_GUARDED_BY(mMutex) = false;
};

} // namespace brindle::utility
