#pragma once

#include "utility/src/memory/Region.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace brindle::utility {

/// The chunks of one class in a heap. `chunk` belongs to the owner thread; the rest is accessed
/// under the heap's lock.
struct alignas(64) Slot {
    static constexpr std::uint32_t kFormedBytes = 4096;
    static constexpr std::uint32_t kFormedBlocks = 4;

    Chunk* chunk = &S_noChunk; ///< the current chunk that the next block is allocated from
    Chunk* parked = nullptr;   ///< a chunk that is kept even when it is empty
    std::uint32_t emptied = 0; ///< how often in a row a chunk larger than small was found empty
    /// Whether `chunk` switches to the small or middle chunk that the owner last freed a block
    /// into.
    bool followsFrees = true;
    std::uint64_t bytes = 0; ///< of all chunks of the class
    /// The chunks of the class that are not full, except a large one that is current.
    LinkedList<Chunk, &Chunk::inClass> withFree;

    bool HasChunk() const noexcept { return chunk != &S_noChunk; }

    /// Requires that `free` is empty; adds some of the blocks that were never on it. False if none
    /// are left.
    bool Form() noexcept {
        std::uint32_t const first = chunk->bump;
        std::uint32_t const end = chunk->End();
        std::uint32_t const blockSize = SizeClasses::kBlockSizes[chunk->sizeClass];
        if (!HasChunk() || first == end) {
            return false;
        }
        // Not all at once, as that would touch pages that may never be needed.
        std::uint32_t const atMost = std::max(kFormedBytes / blockSize, kFormedBlocks) * blockSize;
        std::uint32_t const behind = end - first <= atMost ? end : first + atMost;
        std::uint32_t const last = behind - blockSize;
        for (std::uint32_t link = first; link != last; link += blockSize) {
            WriteLink(chunk->origin + link, link + blockSize);
        }
        WriteLink(chunk->origin + last, 0);
        chunk->free = first;
        chunk->bump = behind;
        return true;
    }

    static Chunk S_noChunk; ///< has no blocks and is never modified
};

static_assert(sizeof(Slot) == 64);

struct ThreadSlots {
    std::array<Slot, SizeClasses::kCount> slots{};
    /// For chunks that a free must not make the next to allocate from: `chunk` is written, and
    /// never used.
    Slot sink;

    /// Whether a slot is a member of this object.
    bool Has(Slot const* inSlot) const noexcept {
        return reinterpret_cast<std::uintptr_t>(inSlot) - reinterpret_cast<std::uintptr_t>(this) <
               sizeof(ThreadSlots);
    }

    /// Those of the calling thread, or slots without chunks if it has no heap.
    static ThreadSlots& Mine() noexcept { return *t_mineP; }

    static ThreadSlots S_notMade; ///< of threads that have no heap yet
    static ThreadSlots S_ended;   ///< of threads that have abandoned their heap
    // The TLS offset is fixed when the library is loaded, so access needs no function call.
    static __thread ThreadSlots* t_mineP __attribute__((tls_model("initial-exec")));
};

} // namespace brindle::utility
