#pragma once

#include "utility/src/memory/Region.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace brindle::utility {

/// The chunks of one class in a heap. `chunk` belongs to the owner, the rest to who has its lock.
struct alignas(64) Slot {
    static constexpr std::uint32_t kFormedBytes = 4096;
    static constexpr std::uint32_t kFormedBlocks = 4;

    Chunk* chunk = &S_noChunk; ///< a current one, which the next block is allocated from
    Chunk* parked = nullptr;   ///< the one that stays though it is empty
    std::uint32_t emptied = 0; ///< how often in a row one that is not small was found empty
    bool takesTurns = true;    ///< whether chunks that are not large turn `chunk` to themselves
    std::uint64_t bytes = 0;   ///< of all chunks of the class
    /// Chunks with known free blocks, but for a large one that is current.
    LinkedList<Chunk, &Chunk::inClass> withFree;

    bool HasChunk() const noexcept { return chunk != &S_noChunk; }

    /// Makes free blocks of some of those that were never given out, where none are free. False if
    /// all were given out.
    bool Form() noexcept {
        std::uint32_t const first = chunk->bump;
        std::uint32_t const end = chunk->End();
        std::uint32_t const blockSize = SizeClasses::kBlockSizes[chunk->sizeClass];
        if (!HasChunk() || first == end) {
            return false;
        }
        // Not all at once: their pages may never have been touched.
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

    static Chunk S_noChunk; ///< has no blocks, and is never changed
};

static_assert(sizeof(Slot) == 64);

struct ThreadSlots {
    std::array<Slot, SizeClasses::kCount> slots{};
    Slot sink; ///< of chunks that are not to be allocated from: what its `chunk` is matters to
               ///< nobody

    /// Whether a slot is one of these.
    bool Has(Slot const* inSlot) const noexcept {
        return reinterpret_cast<std::uintptr_t>(inSlot) - reinterpret_cast<std::uintptr_t>(this) <
               sizeof(ThreadSlots);
    }

    /// The calling thread's; where it has none, empty ones.
    static ThreadSlots& Mine() noexcept { return *t_mineP; }

    static ThreadSlots S_notMade; ///< of a thread that has not called yet
    static ThreadSlots S_ended;   ///< of a thread that has given up its own
    // Its place is known when the library is loaded: a read costs no call.
    static __thread ThreadSlots* t_mineP __attribute__((tls_model("initial-exec")));
};

} // namespace brindle::utility
