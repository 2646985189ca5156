#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace brindle::utility {

/// The kinds of chunks that blocks are cut from. Their sizes nest without waste: a middle chunk is
/// 16 small ones and a header, a large chunk is 14 middle ones and a header.
enum class ChunkKind : std::uint8_t { kSmall, kMiddle, kLarge };

inline constexpr std::uint32_t kSmallChunk = 4128;
inline constexpr std::uint32_t kMiddleChunk = 66080;
inline constexpr std::uint32_t kLargeChunk = 925152;
inline constexpr std::uint32_t kChunkHeader = 32;

constexpr std::uint32_t SizeOf(ChunkKind inKind) {
    return inKind == ChunkKind::kSmall    ? kSmallChunk
           : inKind == ChunkKind::kMiddle ? kMiddleChunk
                                          : kLargeChunk;
}

} // namespace brindle::utility

namespace brindle::utility::SizeClasses {

/// The largest request that a class of the ladder of block sizes serves.
inline constexpr std::uint32_t kLargest = 8192;

/// 71 classes in ascending order of block size, then two for clients that request a block of the
/// exact size of a small or a middle chunk.
inline constexpr std::size_t kOfSmallChunks = 71;
inline constexpr std::size_t kOfMiddleChunks = 72;
inline constexpr std::size_t kCount = 73;

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
    std::size_t index = 0;
    for (std::uint32_t size = 4; size <= kLargest; size = NextOnLadder(size)) {
        sizes[index++] = size;
    }
    sizes[kOfSmallChunks] = kSmallChunk;
    sizes[kOfMiddleChunks] = kMiddleChunk;
    return sizes;
}

inline constexpr std::array<std::uint32_t, kCount> kBlockSizes = BlockSizes();
static_assert(kBlockSizes[kOfSmallChunks - 1] == kLargest);

/// Whether a class keeps its last chunk when that is empty.
constexpr bool KeepsChunk(std::size_t inClass) {
    return kBlockSizes[inClass] <= 128 || kBlockSizes[inClass] == 1024;
}

/// The kind of the next chunk of a class whose chunks have `inBytes` bytes in total.
constexpr ChunkKind NextChunk(std::size_t inClass, std::uint64_t inBytes) {
    bool const isSmall = kBlockSizes[inClass] <= 1024;
    return inBytes >= kLargeChunk                ? ChunkKind::kLarge
           : !isSmall || inBytes >= kMiddleChunk ? ChunkKind::kMiddle
                                                 : ChunkKind::kSmall;
}

/// How many blocks of a class a chunk holds. A chunk given to a client is one block, which includes
/// the chunk's header.
constexpr std::uint32_t BlockCount(std::size_t inClass, ChunkKind inKind) {
    return inClass >= kOfSmallChunks ? 1 : (SizeOf(inKind) - kChunkHeader) / kBlockSizes[inClass];
}

/// The class of each request up to 8192 bytes, including those for small chunks.
constexpr std::array<std::uint8_t, kLargest + 1> ClassesBySize() {
    std::array<std::uint8_t, kLargest + 1> classes{};
    std::uint32_t request = 0;
    for (std::uint8_t index = 0; index < kOfSmallChunks; ++index) {
        for (; request <= kBlockSizes[index]; ++request) {
            classes[request] = index;
        }
    }
    classes[kSmallChunk] = kOfSmallChunks;
    return classes;
}

inline constexpr std::array<std::uint8_t, kLargest + 1> kClassOf = ClassesBySize();

/// The class of a request, `kCount` if the system's heap serves it.
inline std::size_t ClassOf(std::uint32_t inSize) noexcept {
    return inSize <= kLargest       ? kClassOf[inSize]
           : inSize == kMiddleChunk ? kOfMiddleChunks
                                    : kCount;
}

} // namespace brindle::utility::SizeClasses
