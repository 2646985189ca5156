#pragma once

#include "utility/src/Chunk.h"

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
    static bool Hold(void const* inBlock) noexcept {
        auto const address = reinterpret_cast<std::uintptr_t>(inBlock);
        // The rest of the MiB is other heap memory.
        if (address % kAlignment >= kLargeChunk || (address >> kAddressBits) != 0) {
            return false;
        }
        // The owner of the block has it from a thread that saw the bit set, or the leaf made;
        // and of a block that lies where a chunk was, from one that saw the bit go.
        Leaf const* const leaf = S_leaves[address >> kLeafShift].load(std::memory_order_acquire);
        return leaf != nullptr &&
               (((*leaf)[WordOf(address)].load(std::memory_order_relaxed) >> BitOf(address)) & 1) !=
                   0;
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

    static std::atomic<Leaf*> S_leaves[std::size_t{1} << (kAddressBits - kLeafShift)];
};

} // namespace brindle::utility
