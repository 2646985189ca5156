#pragma once

#include "utility/src/memory/Chunk.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace brindle::utility {

/// The chunks that come from the heap, `kLargeChunk` bytes each, of which smaller chunks and blocks
/// are made. Each begins at a multiple of 1 MiB, so a table with a bit a MiB tells what lies in
/// one.
class TopChunks {
public:
    /// Null if the heap has none.
    static void* Allocate() noexcept;
    static void Free(void* inChunk) noexcept;

    /// Whether a block lies in one of them. Any thread may ask about a block that it owns, or about
    /// null, while others allocate and free.
    static bool Hold(void const* inBlock) noexcept;

    /// The same in one read: true only if a block lies in one, and false also of some that do.
    static bool AreKnownToHold(void const* inBlock) noexcept {
        auto const address = reinterpret_cast<std::uintptr_t>(inBlock);
        // Who owns the block has it from a thread that saw the chunk come to be; and if it lies
        // where a chunk was, from one that saw it go.
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
        // No block lies behind this address.
        static constexpr std::uintptr_t kNone = std::uintptr_t{1} << 63;
        std::atomic<std::uintptr_t> chunk{kNone};
    };
    static constexpr std::size_t kKnownCount = 1024;
    static std::atomic<std::uintptr_t>& KnownAt(std::uintptr_t inAddress) noexcept {
        return S_known[(inAddress >> 20) % kKnownCount].chunk;
    }

    // A bit a MiB for all addresses, set where a chunk begins.
    static std::atomic<Leaf*> S_leaves[std::size_t{1} << (kAddressBits - kLeafShift)];
    // The addresses of chunks by their low bits: where two would meet, of the first.
    static std::array<Known, kKnownCount> S_known;
};

} // namespace brindle::utility
