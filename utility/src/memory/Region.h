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

/// What the owner thread may do with a chunk without the heap's lock.
enum class ChunkState : std::uint8_t {
    kFull,      ///< nothing: `free` is empty, and a block is freed here under the lock or remotely
    kAvailable, ///< free blocks into it
    kCurrent,   ///< allocate blocks from it and free blocks into it
};

/// The header of a chunk, stored apart from the chunk's blocks. A field that is not atomic belongs
/// to the owner thread, or to the thread that holds the heap's lock where its comment says so.
struct alignas(64) Chunk {
    /// Added to `used` of a parked chunk, so that the fast path does not report it as empty.
    static constexpr std::uint32_t kParked = 0x20000000;

    /// How many blocks are allocated to clients or on `remote`. Written by the owner thread; when
    /// it frees a block, this store is its last access to the chunk.
    std::atomic<std::uint32_t> used{0};
    std::uint32_t free = 0;      ///< the link to the first free block
    std::byte* origin = nullptr; ///< links are offsets from here
    /// The slot that allocates from this chunk after the owner thread frees a block into it, or the
    /// heap's `sink`. It is a member of the heap that the chunk belongs to, so it identifies the
    /// heap as well.
    std::atomic<Slot*> slot{nullptr};
    RemoteFrees remote;         ///< blocks that other threads freed
    ListLinks<Chunk> inClass{}; ///< links of `Slot::withFree`; under the lock
    Chunk* nextInInbox = nullptr;
    std::uint32_t bump = 0; ///< the link to the first block that was never on `free`
    std::uint8_t sizeClass = 0;
    std::atomic<ChunkState> state{ChunkState::kFull}; ///< changed under the lock
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

    /// Takes a block from `free`, null if that is empty. For the owner thread; the chunk is
    /// current.
    void* Take() noexcept {
        if (free == 0) {
            return nullptr;
        }
        std::byte* const block = origin + free;
        free = ReadLink(block);
        AddUsed(1);
        return block;
    }
    /// Frees a block, for the owner thread. Returns false and does nothing if the chunk is full or
    /// may become empty.
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
        // Pairs with the acquire load of the thread that finds the chunk empty and reclaims it.
        used.store(inLeft, std::memory_order_release);
    }

    std::uint32_t End() const noexcept { return EndOf(sizeClass, kind); }

    /// The offset from `origin` at which the blocks of a chunk end.
    static std::uint32_t EndOf(std::size_t inClass, ChunkKind inKind) noexcept {
        return kEnds[static_cast<std::size_t>(inKind)][inClass];
    }

    static constexpr std::uint32_t kFirstBlock = 4; // so that no link to a block is 0

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

/// One MiB of address space, aligned to its size. It holds one large chunk or 14 middle chunks,
/// each of these whole or split into small ones, and this record, which describes the split. A
/// region belongs to one heap.
class Region {
public:
    static constexpr std::size_t kSize = std::size_t{1} << 20;
    static constexpr std::uint32_t kMiddles = 14;
    static constexpr std::uint32_t kSmallsInMiddle = 16;
    static constexpr std::uint32_t kSmalls = kMiddles * kSmallsInMiddle;

    /// The record of the region that an address lies in.
    static Region& Of(void const* inAddress) noexcept {
        auto const address = reinterpret_cast<std::uintptr_t>(inAddress);
        // The offset varies, so that the records of neighbours fall into different cache sets.
        return *reinterpret_cast<Region*>((address & ~(kSize - 1)) + kRecord +
                                          ((address >> 12) & kColours));
    }
    std::byte* Begin() noexcept {
        return reinterpret_cast<std::byte*>(reinterpret_cast<std::uintptr_t>(this) & ~(kSize - 1));
    }

    /// The chunk that a block was cut from.
    Chunk& ChunkOf(void const* inBlock) noexcept { return mChunks[mLeaders[IndexOf(inBlock)]]; }
    /// The chunk that was given to a client as a whole, as one block.
    Chunk& ClientChunkAt(void const* inBlock) noexcept {
        return ChunkOf(static_cast<std::byte const*>(inBlock) + kChunkHeader);
    }

    /// For a region that is entirely free: makes one large chunk of it, or free middle chunks.
    Chunk& MakeLarge() noexcept;
    void MakeMiddles() noexcept;

    /// Takes a free chunk, of which there must be one.
    Chunk& TakeMiddle() noexcept;
    Chunk& TakeSmall() noexcept;
    void GiveMiddle(Chunk const& inChunk) noexcept;
    void GiveSmall(Chunk const& inChunk) noexcept;
    /// Splits a middle chunk that was taken into free small ones.
    void Cut(Chunk const& inMiddle) noexcept;
    /// Merges the small chunks of a middle chunk, which are all free. The result is not free yet.
    Chunk& Join(Chunk const& inSmall) noexcept;
    /// Does the same for the first middle chunk whose small ones are all free; null if there is
    /// none.
    Chunk* JoinAnyFree() noexcept;

    bool HasMiddle() const noexcept { return mFreeMiddles != 0; }
    bool HasSmall() const noexcept { return mMiddlesWithSmalls != 0; }
    bool IsFree() const noexcept { return mFreeMiddles == kAllMiddles; }
    /// Whether all small chunks of the middle chunk that `inSmall` was split from are free.
    bool AreSiblingsFree(Chunk const& inSmall) const noexcept;
    /// How many small chunks are free.
    std::uint32_t FreeSmalls() const noexcept;

    /// Calls the function for every chunk that is not free.
    template <typename Function>
    void ForEachChunk(Function inFunction);

    ThreadHeap* heap;              ///< the heap that the region belongs to
    ListLinks<Region> withMiddles; ///< the heap's regions with a free middle chunk
    ListLinks<Region> withSmalls;  ///< the heap's regions with a free small chunk
    ListLinks<Region> all;         ///< all regions of the heap
    Region* nextInStore;           ///< links the regions that the store keeps

private:
    static constexpr std::size_t kRecord = 0xE2000; // the first page behind the large chunk
    static constexpr std::uintptr_t kColours = 0x700;
    static constexpr std::uint32_t kAllMiddles = (1U << kMiddles) - 1;
    static constexpr std::uint32_t kAllSmalls = (1U << kSmallsInMiddle) - 1;

    // 1 + the index of the small chunk at an address, as if the region consisted of small chunks; 0
    // before the first. Including the headers of middle chunks, small chunks are 4130 bytes apart
    // on average and never more than 30 bytes off that grid. A block begins at least 32 bytes after
    // the beginning of its chunk, so the division finds the right one.
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

    std::uint16_t mFreeMiddles; // one bit for each middle chunk
    std::uint16_t mCutMiddles;
    std::uint16_t mMiddlesWithSmalls;
    bool mIsLarge;
    std::array<std::uint16_t, kMiddles> mFreeSmalls;
    // For the result of `IndexOf`: the index of the header of the chunk that covers the address.
    std::array<std::uint8_t, 1 + kSmalls> mLeaders;
    // A middle chunk uses the header of its first small chunk.
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
