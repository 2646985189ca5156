#pragma once

#include "utility/src/memory/Chunk.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace brindle::utility {

/// The chunks that come from the heap, of `kLargeChunk` bytes each, which all smaller chunks and
/// blocks are parts of. Each begins at a multiple of 1 MiB, so a table with one bit for each MiB
/// says whether an address lies in one.
class TopChunks {
public:
    /// Null without memory.
    [[nodiscard]] static void* Allocate() noexcept;
    static void Free(void* inChunk) noexcept;

    /// Whether a block lies in one of them. Any thread may ask about a block that it owns, or about
    /// null, while others allocate and free.
    [[nodiscard]] static bool Hold(void const* inBlock) noexcept;

    /// The same with a single read: true only if the block lies in one, but false for some that do.
    [[nodiscard]] static bool AreKnownToHold(void const* inBlock) noexcept {
        auto const address = reinterpret_cast<std::uintptr_t>(inBlock);
        // Relaxed suffices: the block reached its owner by steps that happen after its chunk was
        // entered here, or, if it lies where a chunk was, after that chunk was removed.
        return address - KnownAt(address).load(std::memory_order_relaxed) < kLargeChunk;
    }

private:
    static constexpr std::uintptr_t kAlignment = 0x100000;
    static constexpr unsigned kAddressBits = 48;
    static constexpr unsigned kLeafShift = 35; // 32768 MiB a leaf
    static_assert(kLargeChunk <= kAlignment);

    using Word = std::atomic<std::uint64_t>;
    using Leaf = std::array<Word, 512>;

    static std::size_t WordOf(std::uintptr_t inAddress) noexcept { return (inAddress >> 26) % 512; }
    static unsigned BitOf(std::uintptr_t inAddress) noexcept { return (inAddress >> 20) % 64; }
    static Leaf* LeafOf(std::uintptr_t inAddress) noexcept;

    struct Known {
        // No block has an address this high.
        static constexpr std::uintptr_t kNone = std::uintptr_t{1} << 63;
        std::atomic<std::uintptr_t> chunk{kNone};
    };
    static constexpr std::size_t kKnownCount = 1024;
    static std::atomic<std::uintptr_t>& KnownAt(std::uintptr_t inAddress) noexcept {
        return S_known[(inAddress >> 20) % kKnownCount].chunk;
    }

    // One bit for each MiB of the address space, set where a chunk begins.
    static std::atomic<Leaf*> S_leaves[std::size_t{1} << (kAddressBits - kLeafShift)];
    // The addresses of chunks, indexed by their low bits; where two collide, that of the first.
    static std::array<Known, kKnownCount> S_known;
};

} // namespace brindle::utility
