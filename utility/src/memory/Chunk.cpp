#include "utility/src/memory/Chunk.h"

namespace brindle::utility {

Chunk::Chunk(std::uint32_t inSize, std::uint32_t inBlockSize) noexcept
    : mBase(this), mSize(inSize), mBlockSize(inBlockSize),
      mBlockCount((inSize - static_cast<std::uint32_t>(sizeof(Chunk))) / inBlockSize) {
    mFree.Fill(reinterpret_cast<std::byte*>(this) + sizeof(Chunk), mBlockSize, mBlockCount);
}

} // namespace brindle::utility
