#pragma once

#include "utility/src/memory/ChunkedAllocator.h"

#include <cstdint>

namespace brindle::utility {

/// The manager of one size class, which its arguments describe as a `ChunkPlan` does.
template <std::uint32_t kBlockSize, std::uint32_t kFirstChunkSize, std::uint32_t kSecondChunkSize,
          bool kKeepOneChunk>
class AllocatorManager final : public ChunkedAllocator {
public:
    AllocatorManager()
        : ChunkedAllocator({kBlockSize, kFirstChunkSize, kSecondChunkSize, kKeepOneChunk}) {}
};

} // namespace brindle::utility
