#pragma once

#include "utility/src/memory/OwnerLock.h"
#include "utility/src/memory/ThreadSlots.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace brindle::utility {

class RegionStore;

/// The chunks of one thread, the owner. When the owner ends, it abandons the heap, and another
/// thread adopts the heap with all its chunks; in between the heap has no owner.
///
/// On the fast path the owner allocates from the slots and frees blocks of its own chunks without a
/// lock or an atomic read-modify-write. Everything else, except remote frees, happens under the
/// heap's lock. It is cheap for the owner; another thread takes it when remote frees have emptied
/// many chunks that the owner has not drained. docs/concurrency/small-block-allocator.md explains
/// why this is correct.
class ThreadHeap : public ThreadSlots {
public:
    explicit ThreadHeap(RegionStore& ioStore) noexcept : mStore(ioStore) {}
    ThreadHeap(ThreadHeap const&) = delete;
    ThreadHeap& operator=(ThreadHeap const&) = delete;

    // For the owner.

    /// Allocates when the slot's `free` is empty. Throws `std::bad_alloc`.
    void* AllocateSlowly(std::size_t inClass);
    /// Frees a block of one of this heap's chunks, when `Chunk::Give` has returned false.
    void Dispose(Chunk& ioChunk, void* inBlock);
    /// Frees a block of another heap's chunk. It may be held back to be sent together with others
    /// of the same chunk.
    void DisposeRemotely(Chunk& ioChunk, void* inBlock);
    /// Gives back all memory that is kept for the next request, except the chunk that a class
    /// keeps.
    void Release();
    /// Ends the ownership. No chunk stays current, so that visitors can reclaim every empty chunk.
    void Abandon();
    /// Makes the calling thread the owner of an abandoned heap.
    void Adopt();

    // For any thread.

    /// Returns linked blocks of one chunk to the chunk's heap. The caller owns them until the call.
    static void PushRemotely(Chunk& ioChunk, std::uint32_t inFirst, void* inLast,
                             std::uint32_t inCount);

    struct Use {
        std::uint64_t chunks = 0;
        std::uint64_t bytesHeld = 0;   ///< of the class's chunks
        std::uint64_t blocks = 0;      ///< the capacity of these chunks
        std::uint64_t blocksInUse = 0; ///< allocated to clients
    };
    using Uses = std::array<Use, SizeClasses::kCount>;
    /// Adds, for every class, what this heap holds. `CountMine` is for the owner, `CountOthers` for
    /// any other thread.
    void CountMine(Uses& ioUses);
    void CountOthers(Uses& ioUses);
    std::uint64_t Regions() const noexcept { return mRegionCount.load(std::memory_order_relaxed); }

    void CloseForFork() { mLock.CloseForFork(); }
    void OpenInParent() { mLock.OpenInParent(); }
    void OpenInChild() { mLock.OpenInChild(); }

    ThreadHeap* nextOfAll = nullptr;     ///< a link of the registry
    ThreadHeap* nextAbandoned = nullptr; ///< a link of the registry

private:
    class OwnerGuard;

    // The maximal number of parked chunks in a heap that are larger than small ones.
    static constexpr std::size_t kParkedAtMost = 4;
    // A chunk larger than small is parked when it is found empty this often in a row, without
    // another chunk of its class in use in between.
    static constexpr std::uint32_t kEmptiedToPark = 3;
    // The bytes of empty chunks that may await the owner before another thread drains the inbox.
    static constexpr std::uint32_t kUnseenAtMost = 256 * 1024;

    /// A run of freed blocks of another heap's chunk that have not been sent yet.
    struct Outgoing {
        Chunk* chunk = nullptr;
        std::byte* last = nullptr;
        std::uint32_t first = 0;
        std::uint32_t count = 0;
    };

    enum class Caller { kOwner, kVisitor };
    void Drain(Caller inCaller);
    void DrainIfMuch();
    bool Settle(Chunk& ioChunk);
    void SendOutgoing();

    bool NewChunk(std::size_t inClass);
    void* NewClientChunk(std::size_t inClass);
    Chunk* TakeMemory(ChunkKind inKind);
    void GiveMemory(Chunk const& inChunk);
    Chunk* TakeMiddle();
    void GiveMiddle(Chunk const& inChunk);
    Chunk* TakeSmall();
    Region* TakeRegion();
    void GiveRegion(Region& inRegion);
    void ReturnParkedSmalls();
    void ReturnCutMiddle();

    void Install(Chunk& ioChunk);
    void Link(Chunk& ioChunk);
    Slot* SlotToFollow(Chunk const& inChunk);
    void Unlink(Chunk& ioChunk);
    void Detach(Chunk& ioChunk);
    void Return(Chunk& ioChunk);
    void AbsorbRemoteFrees(Chunk& ioChunk);
    void CurrentEmptied(Chunk& ioChunk);
    void Park(Chunk& ioChunk);
    void Unpark(std::size_t inClass);
    void ReturnEldestParked(std::size_t inClass);
    void KeepChunk(std::size_t inClass);
    void Count(Uses& ioUses);

    BasicOwnerLock<NoPause> mLock;
    BasicInbox<Chunk, NoPause> mInbox;
    // The bytes of the chunks that remote frees have emptied since the inbox was last drained.
    std::atomic<std::uint32_t> mUnseen{0};
    std::atomic<std::uint32_t> mRegionCount{0};

    RegionStore& mStore;
    bool mIsAbandoned = false; // this and what follows is accessed under the lock
    LinkedList<Region, &Region::withMiddles> mWithMiddles;
    LinkedList<Region, &Region::withSmalls> mWithSmalls;
    LinkedList<Region, &Region::all> mRegions;
    // A ring of the classes that parked a chunk larger than small; the eldest at `mNextParked`.
    std::array<std::uint8_t, kParkedAtMost> mParked{};
    std::size_t mNextParked = 0;

    Outgoing mOutgoing; // for the owner, without the lock
};

} // namespace brindle::utility
