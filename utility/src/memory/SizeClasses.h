#pragma once

#include "utility/src/memory/ChunkedAllocator.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace brindle::utility::SizeClasses {

/// The largest request that a class of the ladder serves.
inline constexpr std::uint32_t kLargest = 8192;

/// The indices of the classes: first the 12 classes of requests that keep a chunk (4 to 128, and
/// 1024), then the other 59, then the two of chunks.
inline constexpr std::size_t kStocked = 12;
inline constexpr std::size_t kOfSmallChunks = 71;
inline constexpr std::size_t kOfMiddleChunks = 72;
inline constexpr std::size_t kCount = 73;

constexpr bool KeepsChunk(std::uint32_t inBlockSize) {
    return inBlockSize <= 128 || inBlockSize == 1024 || inBlockSize == kSmallChunk ||
           inBlockSize == kMiddleChunk;
}

constexpr std::uint32_t NextOnLadder(std::uint32_t inBlockSize) {
    std::uint32_t const step = inBlockSize < 8      ? 4
                               : inBlockSize < 32   ? 8
                               : inBlockSize < 256  ? 16
                               : inBlockSize < 512  ? 32
                               : inBlockSize < 4096 ? 128
                                                    : 256;
    return inBlockSize + step;
}

constexpr std::array<std::uint32_t, kCount> BlockSizes() {
    std::array<std::uint32_t, kCount> sizes{};
    std::size_t stocked = 0;
    std::size_t other = kStocked;
    for (std::uint32_t size = 4; size <= kLargest; size = NextOnLadder(size)) {
        sizes[KeepsChunk(size) ? stocked++ : other++] = size;
    }
    sizes[kOfSmallChunks] = kSmallChunk;
    sizes[kOfMiddleChunks] = kMiddleChunk;
    return sizes;
}

inline constexpr std::array<std::uint32_t, kCount> kBlockSizes = BlockSizes();

constexpr ChunkPlan PlanOf(std::size_t inClass) {
    std::uint32_t const size = kBlockSizes[inClass];
    bool const isSmall = size <= 1024;
    bool const isOfMiddleChunks = inClass == kOfMiddleChunks;
    return {size,
            isOfMiddleChunks ? kLargeChunk
            : isSmall        ? kSmallChunk
                             : kMiddleChunk,
            isSmall ? kMiddleChunk : kLargeChunk, KeepsChunk(size)};
}

/// The class that serves each size of request. 4128 is a chunk's.
constexpr std::array<std::uint8_t, kLargest + 1> ClassesBySize() {
    std::array<std::uint8_t, kLargest + 1> classes{};
    std::uint32_t request = 0;
    for (std::uint32_t size = 4; size <= kLargest; size = NextOnLadder(size)) {
        std::uint8_t index = 0;
        while (kBlockSizes[index] != size) {
            ++index;
        }
        for (; request <= size; ++request) {
            classes[request] = index;
        }
    }
    classes[kSmallChunk] = kOfSmallChunks;
    return classes;
}

inline constexpr std::array<std::uint8_t, kLargest + 1> kClassOf = ClassesBySize();

} // namespace brindle::utility::SizeClasses
