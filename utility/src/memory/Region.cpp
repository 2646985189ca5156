#include "utility/src/memory/Region.h"

#include <algorithm>

namespace brindle::utility {

namespace {

std::uint32_t LowestBit(std::uint32_t inBits) noexcept {
    return static_cast<std::uint32_t>(__builtin_ctz(inBits));
}

void SetBit(std::uint16_t& ioBits, std::uint32_t inBit) noexcept {
    ioBits = static_cast<std::uint16_t>(ioBits | 1U << inBit);
}

void ClearBit(std::uint16_t& ioBits, std::uint32_t inBit) noexcept {
    ioBits = static_cast<std::uint16_t>(ioBits & ~(1U << inBit));
}

} // namespace

Chunk& Region::MakeLarge() noexcept {
    mIsLarge = true;
    mFreeMiddles = mCutMiddles = mMiddlesWithSmalls = 0;
    mLeaders.fill(0);
    mChunks[0].origin = Begin() + kChunkHeader - Chunk::kFirstBlock;
    mChunks[0].kind = ChunkKind::kLarge;
    return mChunks[0];
}

void Region::MakeMiddles() noexcept {
    mIsLarge = false;
    mFreeMiddles = kAllMiddles;
    mCutMiddles = mMiddlesWithSmalls = 0;
    mLeaders[0] = 0;
}

Chunk& Region::TakeMiddle() noexcept {
    std::uint32_t const middle = LowestBit(mFreeMiddles);
    ClearBit(mFreeMiddles, middle);
    std::uint32_t const first = middle * kSmallsInMiddle;
    std::fill_n(&mLeaders[1 + first], kSmallsInMiddle, static_cast<std::uint8_t>(first));
    Chunk& chunk = mChunks[first];
    chunk.origin = BeginOfMiddle(middle) + kChunkHeader - Chunk::kFirstBlock;
    chunk.kind = ChunkKind::kMiddle;
    return chunk;
}

void Region::Cut(Chunk const& inMiddle) noexcept {
    std::uint32_t const middle = IndexIn(inMiddle) / kSmallsInMiddle;
    SetBit(mCutMiddles, middle);
    SetBit(mMiddlesWithSmalls, middle);
    mFreeSmalls[middle] = kAllSmalls;
    for (std::uint32_t i = middle * kSmallsInMiddle; i < (middle + 1) * kSmallsInMiddle; ++i) {
        mLeaders[1 + i] = static_cast<std::uint8_t>(i);
    }
}

Chunk& Region::Join(Chunk const& inSmall) noexcept {
    std::uint32_t const middle = IndexIn(inSmall) / kSmallsInMiddle;
    ClearBit(mCutMiddles, middle);
    ClearBit(mMiddlesWithSmalls, middle);
    return mChunks[middle * kSmallsInMiddle];
}

Chunk& Region::TakeSmall() noexcept {
    std::uint32_t const middle = LowestBit(mMiddlesWithSmalls);
    std::uint32_t const small = LowestBit(mFreeSmalls[middle]);
    ClearBit(mFreeSmalls[middle], small);
    if (mFreeSmalls[middle] == 0) {
        ClearBit(mMiddlesWithSmalls, middle);
    }
    Chunk& chunk = mChunks[middle * kSmallsInMiddle + small];
    chunk.origin = BeginOfMiddle(middle) + kChunkHeader + std::size_t{small} * kSmallChunk +
                   kChunkHeader - Chunk::kFirstBlock;
    chunk.kind = ChunkKind::kSmall;
    return chunk;
}

Chunk* Region::JoinAnyFree() noexcept {
    for (std::uint32_t middle = 0; middle < kMiddles; ++middle) {
        if ((mCutMiddles >> middle & 1) != 0 && mFreeSmalls[middle] == kAllSmalls) {
            return &Join(mChunks[middle * kSmallsInMiddle]);
        }
    }
    return nullptr;
}

void Region::GiveMiddle(Chunk const& inChunk) noexcept {
    SetBit(mFreeMiddles, IndexIn(inChunk) / kSmallsInMiddle);
}

void Region::GiveSmall(Chunk const& inChunk) noexcept {
    std::uint32_t const index = IndexIn(inChunk);
    SetBit(mFreeSmalls[index / kSmallsInMiddle], index % kSmallsInMiddle);
    SetBit(mMiddlesWithSmalls, index / kSmallsInMiddle);
}

bool Region::AreSiblingsFree(Chunk const& inSmall) const noexcept {
    return mFreeSmalls[IndexIn(inSmall) / kSmallsInMiddle] == kAllSmalls;
}

std::uint32_t Region::FreeSmalls() const noexcept {
    std::uint32_t count = 0;
    for (std::uint32_t middle = 0; middle < kMiddles; ++middle) {
        if ((mCutMiddles >> middle & 1) != 0) {
            count += static_cast<std::uint32_t>(__builtin_popcount(mFreeSmalls[middle]));
        }
    }
    return count;
}

} // namespace brindle::utility
