#include "utility/src/memory/ChunkSet.h"

#include <algorithm>
#include <functional>

namespace brindle::utility {

namespace {

constexpr std::size_t kChunksAtFirst = 256;

} // namespace

ChunkSet::ChunkSet() {
    mByAddress.reserve(kChunksAtFirst);
}

void ChunkSet::Reserve() {
    if (mByAddress.size() == mByAddress.capacity()) {
        mByAddress.reserve(2 * mByAddress.size());
    }
}

void ChunkSet::Add(Chunk* inChunk) noexcept {
    auto const place =
        std::upper_bound(mByAddress.begin(), mByAddress.end(), inChunk, std::less<Chunk*>());
    mByAddress.insert(place, inChunk);
    mCurrent = inChunk;
}

void ChunkSet::PickCurrent() noexcept {
    // A small full chunk may have fewer blocks in use than a large one with free blocks.
    mCurrent = nullptr;
    for (Chunk* const chunk : mByAddress) {
        if (!chunk->IsFull() &&
            (mCurrent == nullptr || chunk->BlocksInUse() < mCurrent->BlocksInUse())) {
            mCurrent = chunk;
        }
    }
}

Chunk* ChunkSet::RemoveEmpty() noexcept {
    auto const place = std::find_if(mByAddress.rbegin(), mByAddress.rend(),
                                    [](Chunk* inChunk) { return inChunk->BlocksInUse() == 0; });
    if (place == mByAddress.rend()) {
        return nullptr;
    }
    Chunk* const chunk = *place;
    mByAddress.erase(std::next(place).base());
    if (chunk == mCurrent) {
        mCurrent = nullptr;
    }
    return chunk;
}

Chunk* ChunkSet::Search(void const* inBlock) const noexcept {
    auto const after = std::upper_bound(mByAddress.begin(), mByAddress.end(), inBlock,
                                        [](void const* inAddress, Chunk* inChunk) {
                                            return std::less<void const*>()(inAddress, inChunk);
                                        });
    if (after == mByAddress.begin()) {
        return nullptr;
    }
    Chunk* const chunk = *std::prev(after);
    return chunk->Holds(inBlock) ? chunk : nullptr;
}

} // namespace brindle::utility
