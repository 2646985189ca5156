#pragma once

#include "utility/src/memory/LinkedList.h"
#include "utility/src/memory/RemoteFrees.h"
#include "utility/src/memory/SizeClasses.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace brindle::utility {

class ThreadHeap;
struct Slot;

/// What a chunk is for its owner.
enum class ChunkState : std::uint8_t {
    kFull,      ///< has no known free block: whoever touches it has the lock
    kAvailable, ///< has one: the owner disposes of blocks without the lock
    kCurrent,   ///< the owner allocates and disposes of blocks without the lock
};

/// The header of a chunk, which lies apart from it. Fields that are not atomic belong to the owner,
/// or to who has the owner's lock, where they say so.
struct alignas(64) Chunk {
    /// Added to `used` where nobody wants to know that the chunk has become empty.
    static constexpr std::uint32_t kParked = 0x20000000;

    /// How many blocks are with clients or on `remote`. Stored by the owner, last of what it does
    /// with a block that it disposes of.
    std::atomic<std::uint32_t> used{0};
    std::uint32_t free = 0;      ///< the link to the first free block
    std::byte* origin = nullptr; ///< what links count from
    /// The slot that turns to this chunk when a block of it is disposed of; of the heap that the
    /// chunk belongs to, so it tells that, too.
    std::atomic<Slot*> slot{nullptr};
    RemoteFrees remote;         ///< blocks that others disposed of
    ListLinks<Chunk> inClass{}; ///< of available chunks; with the lock
    Chunk* nextInInbox = nullptr;
    std::uint32_t bump = 0; ///< where the blocks begin that were never given out
    std::uint8_t sizeClass = 0;
    std::atomic<ChunkState> state{ChunkState::kFull}; ///< changed with the lock
    ChunkKind kind = ChunkKind::kSmall;

    std::uint32_t Used() const noexcept {
        return used.load(std::memory_order_relaxed) & (kParked - 1);
    }
    bool IsParked() const noexcept { return used.load(std::memory_order_relaxed) >= kParked; }
    bool IsFull() const noexcept {
        return state.load(std::memory_order_relaxed) == ChunkState::kFull;
    }
    bool IsLarge() const noexcept { return kind == ChunkKind::kLarge; }
    bool IsCurrent() const noexcept {
        return state.load(std::memory_order_relaxed) == ChunkState::kCurrent;
    }
    void AddUsed(std::uint32_t inCount) noexcept {
        used.store(used.load(std::memory_order_relaxed) + inCount, std::memory_order_relaxed);
    }

    /// A free block, null if the list is empty. For the owner, who allocates from the chunk.
    void* Take() noexcept {
        if (free == 0) {
            return nullptr;
        }
        std::byte* const block = origin + free;
        free = ReadLink(block);
        AddUsed(1);
        return block;
    }
    /// Gives a block back, for the owner. False, with nothing done, if the chunk may become empty
    /// by it, or is full.
    bool Give(void* inBlock) noexcept {
        std::uint32_t const left = used.load(std::memory_order_relaxed) - 1;
        if (left == remote.Count() || IsFull()) {
            return false;
        }
        Push(inBlock, left);
        return true;
    }
    void Push(void* inBlock, std::uint32_t inLeft) noexcept {
        WriteLink(inBlock, free);
        free = static_cast<std::uint32_t>(static_cast<std::byte*>(inBlock) - origin);
        // Releases the block to who finds that the chunk has become empty.
        used.store(inLeft, std::memory_order_release);
    }

    std::uint32_t End() const noexcept { return EndOf(sizeClass, kind); }

    /// Where the blocks of a chunk end, counted from its origin.
    static std::uint32_t EndOf(std::size_t inClass, ChunkKind inKind) noexcept {
        return kEnds[static_cast<std::size_t>(inKind)][inClass];
    }

    static constexpr std::uint32_t kFirstBlock = 4; // so that no link is 0

private:
    using Ends = std::array<std::array<std::uint32_t, SizeClasses::kCount>, 3>;
    static constexpr Ends MakeEnds() {
        Ends ends{};
        for (std::size_t kind = 0; kind < ends.size(); ++kind) {
            for (std::size_t i = 0; i < SizeClasses::kCount; ++i) {
                ends[kind][i] =
                    kFirstBlock + SizeClasses::kBlockSizes[i] *
                                      SizeClasses::BlockCount(i, static_cast<ChunkKind>(kind));
            }
        }
        return ends;
    }
    static Ends const kEnds;
};

static_assert(sizeof(Chunk) == 64);

inline constexpr Chunk::Ends Chunk::kEnds = Chunk::MakeEnds();

/// A MiB of the address space at a multiple of its size: a large chunk, whole or cut into middle
/// and small ones, and this record, which tells what it is cut into. It belongs to one heap.
class Region {
public:
    static constexpr std::size_t kSize = std::size_t{1} << 20;
    static constexpr std::uint32_t kMiddles = 14;
    static constexpr std::uint32_t kSmallsInMiddle = 16;
    static constexpr std::uint32_t kSmalls = kMiddles * kSmallsInMiddle;

    /// The record of the region that an address lies in.
    static Region& Of(void const* inAddress) noexcept {
        auto const address = reinterpret_cast<std::uintptr_t>(inAddress);
        // Neighbours have their records in different sets of the cache.
        return *reinterpret_cast<Region*>((address & ~(kSize - 1)) + kRecord +
                                          ((address >> 12) & kColours));
    }
    std::byte* Begin() noexcept {
        return reinterpret_cast<std::byte*>(reinterpret_cast<std::uintptr_t>(this) & ~(kSize - 1));
    }

    /// The chunk of a block of a class of requests.
    Chunk& ChunkOf(void const* inBlock) noexcept { return mChunks[mLeaders[IndexOf(inBlock)]]; }
    /// The chunk that is one block, for a client.
    Chunk& ChunkThatIs(void const* inBlock) noexcept {
        return ChunkOf(static_cast<std::byte const*>(inBlock) + kChunkHeader);
    }

    /// Makes one large chunk of the whole, or middle ones that are free; when all of it is free.
    Chunk& MakeLarge() noexcept;
    void MakeMiddles() noexcept;

    /// A free one; only if there is one.
    Chunk& TakeMiddle() noexcept;
    Chunk& TakeSmall() noexcept;
    void GiveMiddle(Chunk const& inChunk) noexcept;
    void GiveSmall(Chunk const& inChunk) noexcept;
    /// Cuts a middle chunk that was taken into small ones that are free; and makes it whole again,
    /// when they are.
    void Cut(Chunk const& inMiddle) noexcept;
    Chunk& Join(Chunk const& inSmall) noexcept;
    /// The same for a middle chunk whose small ones are all free, null if there is none.
    Chunk* JoinAnyFree() noexcept;

    bool HasMiddle() const noexcept { return mFreeMiddles != 0; }
    bool HasSmall() const noexcept { return mMiddlesWithSmalls != 0; }
    bool IsFree() const noexcept { return mFreeMiddles == kAllMiddles; }
    /// Whether the middle chunk that a small one is cut from has no other in use.
    bool AreAllFreeBeside(Chunk const& inSmall) const noexcept;
    /// How many small chunks are free.
    std::uint32_t FreeSmalls() const noexcept;

    /// Calls the function for every chunk that is not free.
    template <typename Function>
    void ForEachChunk(Function inFunction);

    ThreadHeap* heap;              ///< that it belongs to
    ListLinks<Region> withMiddles; ///< of the heap's regions that have a free middle chunk
    ListLinks<Region> withSmalls;  ///< of those that have a free small one
    ListLinks<Region> all;
    Region* nextInStore; ///< of regions that are kept for the next use

private:
    static constexpr std::size_t kRecord = 0xE2000; // the first page behind the large chunk
    static constexpr std::uintptr_t kColours = 0x700;
    static constexpr std::uint32_t kAllMiddles = (1U << kMiddles) - 1;
    static constexpr std::uint32_t kAllSmalls = (1U << kSmallsInMiddle) - 1;

    // 1 + the index of the small chunk that an address would lie in, if there were small chunks; 0
    // before the first. They lie 4130 bytes apart on average, with the headers of the middle ones,
    // never more than 30 bytes off that grid; and a block begins at least 32 bytes behind the
    // beginning of its chunk.
    static std::size_t IndexOf(void const* inBlock) noexcept {
        constexpr std::uint32_t kDistance = 4130;
        static_assert(kDistance * kSmallsInMiddle == kMiddleChunk);
        auto const offset =
            static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(inBlock) & (kSize - 1));
        return (offset + kDistance - 2 * kChunkHeader) / kDistance;
    }
    std::uint32_t IndexIn(Chunk const& inChunk) const noexcept {
        return static_cast<std::uint32_t>(&inChunk - mChunks.data());
    }
    std::byte* BeginOfMiddle(std::uint32_t inMiddle) noexcept {
        return Begin() + kChunkHeader + std::size_t{inMiddle} * kMiddleChunk;
    }

    std::uint16_t mFreeMiddles; // a bit for each
    std::uint16_t mCutMiddles;
    std::uint16_t mMiddlesWithSmalls;
    bool mIsLarge;
    std::array<std::uint16_t, kMiddles> mFreeSmalls;
    // For each place of a small chunk, from 1 on, the index of the chunk that it lies in.
    std::array<std::uint8_t, 1 + kSmalls> mLeaders;
    // The header of a middle chunk is that of its first small one.
    std::array<Chunk, kSmalls> mChunks;
};

static_assert(kLargeChunk <= 0xE2000 && 0xE2000 + 0x700 + sizeof(Region) <= Region::kSize);

template <typename Function>
void Region::ForEachChunk(Function inFunction) {
    if (mIsLarge) {
        inFunction(mChunks[0]);
        return;
    }
    for (std::uint32_t middle = 0; middle < kMiddles; ++middle) {
        if ((mFreeMiddles >> middle & 1) != 0) {
            continue;
        }
        if ((mCutMiddles >> middle & 1) == 0) {
            inFunction(mChunks[middle * kSmallsInMiddle]);
            continue;
        }
        for (std::uint32_t small = 0; small < kSmallsInMiddle; ++small) {
            if ((mFreeSmalls[middle] >> small & 1) == 0) {
                inFunction(mChunks[middle * kSmallsInMiddle + small]);
            }
        }
    }
}

} // namespace brindle::utility
