#pragma once

#include "utility/src/memory/OwnerLock.h"
#include "utility/src/memory/ThreadSlots.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace brindle::utility {

class RegionStore;

/// The chunks of one thread. When the thread ends, another one gets the heap with all that is in
/// it; in between it has no owner.
///
/// The owner allocates from the slots and disposes of blocks of its own chunks without any
/// synchronisation. All else happens under the heap's lock, which is the owner's for free and
/// which another thread takes when much has become free that the owner has not looked at.
/// docs/concurrency/small-block-allocator.md tells why this is right.
class ThreadHeap : public ThreadSlots {
public:
    explicit ThreadHeap(RegionStore& ioStore) noexcept : mStore(ioStore) {}
    ThreadHeap(ThreadHeap const&) = delete;
    ThreadHeap& operator=(ThreadHeap const&) = delete;

    // For the owner.

    /// Where the slot has no block at hand. Throws `std::bad_alloc`.
    void* AllocateSlowly(std::size_t inClass);
    /// A block of one of the heap's chunks, where `Chunk::Give` leaves it to the heap.
    void Dispose(Chunk& ioChunk, void* inBlock);
    /// A block of another heap's chunk. It may stay here for a while, with its neighbours.
    void DisposeRemotely(Chunk& ioChunk, void* inBlock);
    /// Gives back all that is kept for the next request, but for the chunk that a class keeps.
    void Release();
    /// Leaves no current chunk, so that others can give back all that becomes free.
    void Abandon();
    /// Makes the calling thread the owner of an abandoned heap.
    void Adopt();

    // For any thread.

    /// Passes linked blocks of one chunk to the chunk's heap. They are the caller's until then.
    static void PushRemotely(Chunk& ioChunk, std::uint32_t inFirst, void* inLast,
                             std::uint32_t inCount);

    struct Use {
        std::uint64_t chunks = 0;
        std::uint64_t bytesHeld = 0;   ///< in the class's chunks
        std::uint64_t blocks = 0;      ///< that these have room for
        std::uint64_t blocksInUse = 0; ///< with clients
    };
    using Uses = std::array<Use, SizeClasses::kCount>;
    /// Adds, for every class, what this heap holds. For the owner, and for any other thread.
    void CountMine(Uses& ioUses);
    void CountOthers(Uses& ioUses);
    std::uint64_t Regions() const noexcept { return mRegionCount.load(std::memory_order_relaxed); }

    void CloseForFork() { mLock.CloseForFork(); }
    void OpenInParent() { mLock.OpenInParent(); }
    void OpenInChild() { mLock.OpenInChild(); }

    ThreadHeap* nextOfAll = nullptr;     ///< the registry's
    ThreadHeap* nextAbandoned = nullptr; ///< the registry's

private:
    class OwnerGuard;

    // Parked chunks larger than small ones that a heap has at most.
    static constexpr std::size_t kParkedAtMost = 4;
    // A chunk that was found empty so often, with no other one used in between, is parked.
    static constexpr std::uint32_t kEmptiedToPark = 3;
    // What may be free without the owner's knowing before another thread sees to it.
    static constexpr std::uint32_t kUnseenAtMost = 256 * 1024;

    /// Blocks of another heap's chunk on their way there.
    struct Outgoing {
        Chunk* chunk = nullptr;
        std::byte* last = nullptr;
        std::uint32_t first = 0;
        std::uint32_t count = 0;
    };

    enum class Who { kOwner, kVisitor };
    void Drain(Who inWho);
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
    Slot* TurnsTo(Chunk const& inChunk);
    void Unlink(Chunk& ioChunk);
    void Detach(Chunk& ioChunk);
    void Return(Chunk& ioChunk);
    void CurrentEmptied(Chunk& ioChunk);
    void Park(Chunk& ioChunk);
    void Unpark(std::size_t inClass);
    void ReturnEldestParked(std::size_t inClass);
    void KeepChunk(std::size_t inClass);
    void Count(Uses& ioUses);

    BasicOwnerLock<NoPause> mLock;
    BasicInbox<Chunk, NoPause> mInbox;
    std::atomic<std::uint32_t> mUnseen{0}; // bytes of chunks that others have emptied
    std::atomic<std::uint32_t> mRegionCount{0};

    RegionStore& mStore;
    bool mIsAbandoned = false; // and not adopted yet; with the lock, as all below
    LinkedList<Region, &Region::withMiddles> mWithMiddles;
    LinkedList<Region, &Region::withSmalls> mWithSmalls;
    LinkedList<Region, &Region::all> mRegions;
    std::array<std::uint8_t, kParkedAtMost>
        mParked{}; // classes, the eldest at the place that is next
    std::size_t mNextParked = 0;

    Outgoing mOutgoing; // the owner's, without the lock
};

} // namespace brindle::utility
