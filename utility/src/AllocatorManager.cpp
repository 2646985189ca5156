#include "utility/src/AllocatorManager.h"

#include "utility/src/ChunkSource.h"

#include <brindle/debug/Contract.h>

#include <new>

namespace brindle::utility {

namespace {

constexpr char kContract[] = "inSize <= BlockSize()";
constexpr char kContractFile[] = "utility/src/SmallBlockAllocator";

using MutexLock = threads::FreezableMutexLock;

} // namespace

/// Withdraws the set of chunks as long as it lives. Who has the mutex may nest them.
class ChunkedAllocator::Withdrawal {
public:
    explicit Withdrawal(ChunkedAllocator& ioAllocator)
        : mAllocator(ioAllocator),
          mWithdrawn(ioAllocator.mPublished.load(std::memory_order_relaxed)) {
        if (mWithdrawn != nullptr) {
            threads::ExclusiveGuard const alone(mAllocator.mPublishLock);
            mAllocator.mPublished.store(nullptr, std::memory_order_relaxed);
        }
    }
    Withdrawal(Withdrawal const&) = delete;
    Withdrawal& operator=(Withdrawal const&) = delete;
    // Releases the changes of the set to who reads the pointer.
    ~Withdrawal() { mAllocator.mPublished.store(mWithdrawn, std::memory_order_release); }

private:
    ChunkedAllocator& mAllocator;
    ChunkSet* const mWithdrawn;
};

ChunkedAllocator::ChunkedAllocator(ChunkPlan const& inPlan) : mPlan(inPlan) {
    mPublished.store(&mChunks, std::memory_order_relaxed);
}

void* ChunkedAllocator::Allocate(unsigned int inSize) {
    debug::CheckContract(inSize <= BlockSize(), kContract, kContractFile, 447);
    void* block = nullptr;
    AllocateSeveral(&block, 1);
    return block;
}

bool ChunkedAllocator::Dispose(void* inBlock, unsigned int inSize) {
    debug::CheckContract(inSize <= BlockSize(), kContract, kContractFile, 453);
    return inBlock == nullptr || Give(&inBlock, 1);
}

std::uint32_t ChunkedAllocator::AllocateSeveral(void** outBlocks, std::uint32_t inCount) {
    std::uint32_t const taken = Take(outBlocks, inCount);
    return taken != 0 ? taken : TakeSlowly(outBlocks, inCount);
}

void ChunkedAllocator::DisposeSeveral(void* const* inBlocks, std::uint32_t inCount) noexcept {
    Give(inBlocks, inCount);
}

std::uint32_t ChunkedAllocator::Take(void** outBlocks, std::uint32_t inCount) {
    threads::SharedGuard const share(mPublishLock, true);
    if (!share.IsLocked()) {
        return 0;
    }
    ChunkSet* const chunks = mPublished.load(std::memory_order_acquire);
    if (chunks == nullptr || chunks->Current() == nullptr) {
        return 0;
    }
    return chunks->Current()->Take(outBlocks, inCount);
}

std::uint32_t ChunkedAllocator::TakeSlowly(void** outBlocks, std::uint32_t inCount) {
    MutexLock const lock(mMutex);
    if (std::uint32_t const taken = Take(outBlocks, inCount); taken != 0) {
        return taken;
    }
    Withdrawal const alone(*this);
    mChunks.PickCurrent();
    if (mChunks.Current() == nullptr) {
        AddChunk();
    }
    return mChunks.Current()->Take(outBlocks, inCount);
}

/// False if a block is foreign.
bool ChunkedAllocator::Give(void* const* inBlocks, std::uint32_t inCount) {
    Return result{};
    bool isDone = false;
    {
        threads::SharedGuard const share(mPublishLock, true);
        ChunkSet* const chunks =
            share.IsLocked() ? mPublished.load(std::memory_order_acquire) : nullptr;
        if (chunks != nullptr) {
            result = GiveTo(*chunks, inBlocks, inCount);
            isDone = true;
        }
    }
    if (!isDone) {
        // The set stays as it is for whoever has the mutex.
        MutexLock const lock(mMutex);
        result = GiveTo(mChunks, inBlocks, inCount);
    }
    if (result.isPurgeDue) {
        Purge();
    }
    return !result.isForeign;
}

ChunkedAllocator::Return ChunkedAllocator::GiveTo(ChunkSet const& inChunks, void* const* inBlocks,
                                                  std::uint32_t inCount) noexcept {
    Return result{};
    for (std::uint32_t begin = 0, end = 0; begin < inCount; begin = end) {
        Chunk* const chunk = inChunks.Find(inBlocks[begin]);
        ++end;
        if (chunk == nullptr) {
            result.isForeign = true;
            continue;
        }
        while (end < inCount && chunk->Holds(inBlocks[end])) {
            ++end;
        }
        bool const isEmpty = chunk->Give(inBlocks + begin, end - begin);
        result.isPurgeDue |= isEmpty && (!mPlan.keepOneChunk || inChunks.Count() > 1);
    }
    return result;
}

void ChunkedAllocator::AddChunk() {
    mChunks.Reserve();
    std::uint32_t const size = mBytes >= kLargeChunk             ? kLargeChunk
                               : mBytes >= mPlan.secondChunkSize ? mPlan.secondChunkSize
                                                                 : mPlan.firstChunkSize;
    void* const memory = AllocateChunkMemory(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    mChunks.Add(new (memory) Chunk(size, mPlan.blockSize));
    mBytes += size;
}

void ChunkedAllocator::Purge() {
    MutexLock const lock(mMutex);
    Withdrawal const alone(*this);
    while (!mPlan.keepOneChunk || mChunks.Count() > 1) {
        Chunk* const chunk = mChunks.RemoveEmpty();
        if (chunk == nullptr) {
            break;
        }
        std::uint32_t const size = chunk->Size();
        mBytes -= size;
        chunk->~Chunk();
        DisposeChunkMemory(chunk, size);
    }
    if (mChunks.Current() == nullptr) {
        mChunks.PickCurrent();
    }
}

ChunkedAllocator::Census ChunkedAllocator::Count() {
    MutexLock const lock(mMutex);
    Census census{mChunks.Count(), mBytes, 0, 0};
    for (Chunk const* const chunk : mChunks.ByAddress()) {
        census.blocks += chunk->BlockCount();
        census.blocksInUse += chunk->BlocksInUse();
    }
    return census;
}

void ChunkedAllocator::CloseForFork() {
    mMutex.Freeze();
    // Waits out who is inside. The forking thread itself may still come, by way of the mutex.
    threads::ExclusiveGuard const alone(mPublishLock);
    mBeforeFork = mPublished.exchange(nullptr, std::memory_order_relaxed);
}

void ChunkedAllocator::OpenInParent() {
    mPublished.store(mBeforeFork, std::memory_order_release);
    mMutex.Thaw();
}

void ChunkedAllocator::OpenInChild() {
    mMutex.ThawInChild();
    // A thread that is not here may have been at its mutexes.
    new (&mPublishLock) threads::ReadWriteLock;
    mPublished.store(mBeforeFork, std::memory_order_relaxed);
}

} // namespace brindle::utility
