#pragma once

#include "platform/portable/FreeList.h"

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace brindle::utility {

/// The sizes of chunks. They fit each other without waste: a middle chunk is a header and 16 small
/// ones, a large chunk is a header and 14 middle ones.
inline constexpr std::uint32_t kSmallChunk = 4128;
inline constexpr std::uint32_t kMiddleChunk = 66080;
inline constexpr std::uint32_t kLargeChunk = 925152;

/// The header of a run of blocks of one size; the blocks begin right behind it.
class Chunk {
public:
    /// To be constructed at the start of `inSize` bytes of memory. All blocks are free at first.
    Chunk(std::uint32_t inSize, std::uint32_t inBlockSize) noexcept;

    bool Holds(void const* inBlock) const noexcept {
        return reinterpret_cast<std::uintptr_t>(inBlock) - reinterpret_cast<std::uintptr_t>(mBase) <
               mSize;
    }

    /// Takes up to `inCount` free blocks and returns how many it got. Any thread may call.
    [[nodiscard]] std::uint32_t Take(void** outBlocks, std::uint32_t inCount) noexcept;
    /// Gives back blocks of this chunk. Returns true if none is in use any more. Any thread may
    /// call.
    [[nodiscard]] bool Give(void* const* inBlocks, std::uint32_t inCount) noexcept;

    std::uint32_t Size() const noexcept { return mSize; }
    std::uint32_t BlockCount() const noexcept { return mBlockCount; }
    /// Exact while no thread takes or gives.
    std::int32_t BlocksInUse() const noexcept { return mInUse.load(std::memory_order_relaxed); }
    bool IsFull() const noexcept { return BlocksInUse() == static_cast<std::int32_t>(mBlockCount); }

private:
    Chunk* const mBase;
    std::uint32_t const mSize;
    std::uint32_t const mBlockSize;
    std::uint32_t const mBlockCount;
    // Only counts, so relaxed: the free list orders the accesses to the blocks.
    std::atomic<std::int32_t> mInUse{0};
    platform::FreeList mFree;
};

static_assert(sizeof(Chunk) == 32);

inline std::uint32_t Chunk::Take(void** outBlocks, std::uint32_t inCount) noexcept {
    std::uint32_t taken = 0;
    while (taken < inCount && (outBlocks[taken] = mFree.Pop()) != nullptr) {
        ++taken;
    }
    if (taken != 0) {
        mInUse.fetch_add(static_cast<std::int32_t>(taken), std::memory_order_relaxed);
    }
    return taken;
}

inline bool Chunk::Give(void* const* inBlocks, std::uint32_t inCount) noexcept {
    for (std::uint32_t i = 1; i < inCount; ++i) {
        mFree.Link(inBlocks[i - 1], inBlocks[i]);
    }
    mFree.PushChain(inBlocks[0], inBlocks[inCount - 1]);
    auto const given = static_cast<std::int32_t>(inCount);
    return mInUse.fetch_sub(given, std::memory_order_relaxed) == given;
}

} // namespace brindle::utility
