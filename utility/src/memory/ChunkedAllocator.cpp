#include "utility/src/memory/ChunkedAllocator.h"

#include "utility/src/memory/ChunkSource.h"

#include <brindle/debug/Contract.h>

#include <new>

namespace brindle::utility {

namespace {

constexpr char kContract[] = "inSize <= BlockSize()";
constexpr char kContractFile[] = "utility/src/SmallBlockAllocator";

using threads::FreezableMutexLock;

} // namespace

/// Withdraws the set of chunks for its lifetime. The mutex must be held.
class ChunkedAllocator::Withdrawal {
public:
    explicit Withdrawal(ChunkedAllocator& ioAllocator) BRN_REQUIRES(ioAllocator.mMutex)
        : mAllocator(ioAllocator) {
        mAllocator.Withdraw();
    }
    Withdrawal(Withdrawal const&) = delete;
    Withdrawal& operator=(Withdrawal const&) = delete;
    // Not analysed: the analysis does not see that the constructor's caller still holds the mutex.
    ~Withdrawal() BRN_NO_THREAD_SAFETY_ANALYSIS { mAllocator.Publish(); }

private:
    ChunkedAllocator& mAllocator;
};

ChunkedAllocator::ChunkedAllocator(ChunkPlan const& inPlan) : mPlan(inPlan) {}

void ChunkedAllocator::Withdraw() {
    if (mPublished.load(std::memory_order_relaxed) != nullptr) {
        threads::ExclusiveGuard const alone(mPublishLock);
        mPublished.store(nullptr, std::memory_order_relaxed);
    }
}

void ChunkedAllocator::Publish() {
    // An empty set stays withdrawn: it has nothing to take, and adding a chunk need not wait then.
    bool const isOpen = !mIsForking && mChunks.Count() != 0;
    // Releases the changes of the set to the threads that read the pointer.
    mPublished.store(isOpen ? &mChunks : nullptr, std::memory_order_release);
}

void* ChunkedAllocator::Allocate(unsigned int inSize) {
    debug::CheckContract(inSize <= BlockSize(), kContract, kContractFile, 447);
    void* block = nullptr;
    static_cast<void>(AllocateSeveral(&block, 1)); // one, or it throws
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
    if (mPublished.load(std::memory_order_relaxed) == nullptr) {
        return 0; // only saves taking the lock
    }
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
    FreezableMutexLock const lock(mMutex);
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

/// Returns false if one of the blocks is of no chunk here.
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
        // The set does not change while the mutex is held.
        FreezableMutexLock const lock(mMutex);
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
    FreezableMutexLock const lock(mMutex);
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
    FreezableMutexLock const lock(mMutex);
    Census census{mChunks.Count(), mBytes, 0, 0};
    for (Chunk const* const chunk : mChunks.ByAddress()) {
        census.blocks += chunk->BlockCount();
        census.blocksInUse += chunk->BlocksInUse();
    }
    return census;
}

void ChunkedAllocator::CloseForFork() {
    mMutex.Freeze();
    // Waits for the threads inside to leave. The forking thread may still enter, through the mutex.
    mIsForking = true;
    Withdraw();
}

void ChunkedAllocator::OpenInParent() {
    mIsForking = false;
    Publish();
    mMutex.Thaw();
}

void ChunkedAllocator::OpenInChild() {
    // A thread that does not exist in the child may have held its mutexes.
    new (&mPublishLock) threads::ReadWriteLock;
    mIsForking = false;
    Publish();
    mMutex.ThawInChild();
}

} // namespace brindle::utility
