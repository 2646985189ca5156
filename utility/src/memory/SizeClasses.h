#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace brindle::utility {

/// What blocks are cut from. The sizes fit each other without waste: a middle chunk is 16 small
/// ones and a header, a large chunk 14 middle ones and a header.
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

/// The largest request that a class of the ladder serves.
inline constexpr std::uint32_t kLargest = 8192;

/// 71 classes of requests by rising size, then the two of chunks that a client asks for.
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

/// Whether the last chunk of a class stays when it is empty.
constexpr bool KeepsChunk(std::size_t inClass) {
    return kBlockSizes[inClass] <= 128 || kBlockSizes[inClass] == 1024;
}

/// The chunk that a class of requests takes next when it holds `inBytes` of them.
constexpr ChunkKind NextChunk(std::size_t inClass, std::uint64_t inBytes) {
    bool const isSmall = kBlockSizes[inClass] <= 1024;
    return inBytes >= kLargeChunk                ? ChunkKind::kLarge
           : !isSmall || inBytes >= kMiddleChunk ? ChunkKind::kMiddle
                                                 : ChunkKind::kSmall;
}

/// How many blocks of a class a chunk holds. A client's chunk is one block, header and all.
constexpr std::uint32_t BlockCount(std::size_t inClass, ChunkKind inKind) {
    return inClass >= kOfSmallChunks ? 1 : (SizeOf(inKind) - kChunkHeader) / kBlockSizes[inClass];
}

/// The class for each request, small chunks among them.
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

/// The class of a request, `kCount` if the heap serves it.
inline std::size_t ClassOf(std::uint32_t inSize) noexcept {
    return inSize <= kLargest       ? kClassOf[inSize]
           : inSize == kMiddleChunk ? kOfMiddleChunks
                                    : kCount;
}

} // namespace brindle::utility::SizeClasses
