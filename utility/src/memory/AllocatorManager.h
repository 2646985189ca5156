#pragma once

#include "threads/src/locks/FreezableMutex.h"
#include "threads/src/locks/ReadWriteLock.h"
#include "utility/src/memory/AllocatorInterface.h"
#include "utility/src/memory/ChunkSet.h"

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace brindle::utility {

/// What chunks a size class is made of.
struct ChunkPlan {
    std::uint32_t blockSize;
    std::uint32_t firstChunkSize;  ///< at first
    std::uint32_t secondChunkSize; ///< from this many bytes on; from `kLargeChunk` on, that
    bool keepOneChunk;             ///< the last chunk stays, also empty
};

/// The blocks of one size class, in chunks that are blocks of the classes of chunks.
///
/// Usually a block is taken or given without a mutex: on the free list of a chunk, with a share in
/// the lock that keeps the set of chunks as it is. Who changes the set holds the mutex and
/// withdraws the set; who finds it withdrawn waits for the mutex.
/// docs/concurrency/small-block-allocator.md tells why this is right.
class ChunkedAllocator : public AllocatorInterface {
public:
    explicit ChunkedAllocator(ChunkPlan const& inPlan); ///< throws what its locks and memory throw
    ChunkedAllocator(ChunkedAllocator const&) = delete;
    ChunkedAllocator& operator=(ChunkedAllocator const&) = delete;

    void* Allocate(unsigned int inSize) final;
    bool Dispose(void* inBlock, unsigned int inSize) final;
    unsigned int BlockSize() final { return mPlan.blockSize; }

    /// Takes at least one block, and up to `inCount` as far as a chunk has them. Throws
    /// `std::bad_alloc`.
    std::uint32_t AllocateSeveral(void** outBlocks, std::uint32_t inCount);
    /// Gives blocks of this class back.
    void DisposeSeveral(void* const* inBlocks, std::uint32_t inCount) noexcept;

    /// What is held at a moment at which nobody takes or gives.
    struct Census {
        std::size_t chunks;
        std::uint64_t bytes;
        std::uint32_t blocks;
        std::int32_t blocksInUse;
    };
    Census Count();

    /// Keeps every other thread out, before the process is copied; and lets them in again, in the
    /// process and in its copy.
    void CloseForFork() BRN_ACQUIRE(mMutex);
    void OpenInParent() BRN_RELEASE(mMutex);
    void OpenInChild() BRN_RELEASE(mMutex);

protected:
    ~ChunkedAllocator() = default;

private:
    class Withdrawal;
    struct Return {
        bool isForeign;  ///< a block was of no chunk
        bool isPurgeDue; ///< a chunk has become empty
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
    threads::FreezableMutex mMutex; // for whoever changes the set of chunks
    // Null while the set changes or is empty. Changed under the mutex, read with a share in the
    // lock.
    std::atomic<ChunkSet*> mPublished{nullptr};
    threads::ReadWriteLock mPublishLock;
    ChunkSet mChunks;
    std::uint64_t mBytes BRN_GUARDED_BY(mMutex) = 0; // of the chunks
    // While it is set, the mutex is frozen by the thread that forks.
    bool mIsForking BRN_GUARDED_BY(mMutex) = false;
};

template <std::uint32_t kBlockSize, std::uint32_t kFirstChunkSize, std::uint32_t kSecondChunkSize,
          bool kKeepOneChunk>
class AllocatorManager final : public ChunkedAllocator {
public:
    AllocatorManager()
        : ChunkedAllocator({kBlockSize, kFirstChunkSize, kSecondChunkSize, kKeepOneChunk}) {}
};

} // namespace brindle::utility
