#pragma once

#include "utility/src/memory/Chunk.h"
#include "utility/src/memory/HeapAllocator.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace brindle::utility {

/// The chunks of one size class. Any number of threads may call the constant functions at once; the
/// others need the set alone.
class ChunkSet {
public:
    /// Reserves room for 256 chunks. Throws `std::bad_alloc`.
    ChunkSet();
    ChunkSet(ChunkSet const&) = delete;
    ChunkSet& operator=(ChunkSet const&) = delete;

    /// The chunk that blocks are taken from; null if there is none.
    Chunk* Current() const noexcept { return mCurrent; }
    /// The chunk that holds a block, null if none does.
    Chunk* Find(void const* inBlock) const noexcept {
        return mCurrent != nullptr && mCurrent->Holds(inBlock) ? mCurrent : Search(inBlock);
    }
    std::size_t Count() const noexcept { return mByAddress.size(); }
    std::vector<Chunk*, HeapAllocator<Chunk*>> const& ByAddress() const noexcept {
        return mByAddress;
    }

    /// Makes room for the next `Add`. Throws `std::bad_alloc`.
    void Reserve();
    /// Adds a chunk and makes it current.
    void Add(Chunk* inChunk) noexcept;
    /// Makes the emptiest chunk current that has a free block, or none if all are full.
    void PickCurrent() noexcept;
    /// Removes a chunk none of whose blocks is in use, and returns it; null if there is none.
    [[nodiscard]] Chunk* RemoveEmpty() noexcept;

private:
    Chunk* Search(void const* inBlock) const noexcept;

    Chunk* mCurrent = nullptr;
    std::vector<Chunk*, HeapAllocator<Chunk*>> mByAddress;
};

} // namespace brindle::utility
