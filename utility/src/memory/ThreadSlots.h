#pragma once

#include "utility/src/memory/Region.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace brindle::utility {

/// The chunk that a thread allocates blocks of one class from, as far as the usual way needs it.
/// Everything belongs to the thread; others may read `used`.
struct alignas(64) Slot {
    /// Added to `used` where nobody wants to know that the chunk has become empty.
    static constexpr std::uint32_t kParked = 0x20000000;

    std::byte* origin = nullptr;        ///< what links count from
    std::uint32_t free = 0;             ///< the link to the first free block
    std::atomic<std::uint32_t> used{0}; ///< blocks that are not on the list
    std::uint32_t bump = 0;             ///< where the blocks begin that were never given out
    std::uint32_t end = 0;              ///< where they end; 0 if there is no chunk
    std::uint32_t blockSize = 0;
    std::uint32_t emptied = 0; ///< how often in a row the chunk was found empty
    Chunk* chunk = nullptr;
    std::uint64_t bytes = 0;                      ///< of all chunks of the class in this heap
    LinkedList<Chunk, &Chunk::inClass> available; ///< chunks with known free blocks, but `chunk`

    std::uint32_t Used() const noexcept {
        return used.load(std::memory_order_relaxed) & (kParked - 1);
    }
    bool IsParked() const noexcept { return used.load(std::memory_order_relaxed) >= kParked; }
    void AddUsed(std::uint32_t inCount) noexcept {
        used.store(used.load(std::memory_order_relaxed) + inCount, std::memory_order_relaxed);
    }

    /// Null if there is no block at hand.
    void* Take() noexcept {
        if (free != 0) {
            std::byte* const block = origin + free;
            free = ReadLink(block);
            AddUsed(1);
            return block;
        }
        if (bump != end) {
            std::byte* const block = origin + bump;
            bump += blockSize;
            AddUsed(1);
            return block;
        }
        return nullptr;
    }
    bool Holds(void const* inBlock) const noexcept {
        return reinterpret_cast<std::uintptr_t>(inBlock) -
                   reinterpret_cast<std::uintptr_t>(origin) <
               end;
    }
    /// Gives a block of the chunk back. True if none is in use any more.
    bool Give(void* inBlock) noexcept {
        WriteLink(inBlock, free);
        free = static_cast<std::uint32_t>(static_cast<std::byte*>(inBlock) - origin);
        std::uint32_t const left = used.load(std::memory_order_relaxed) - 1;
        used.store(left, std::memory_order_relaxed);
        return left == 0;
    }
};

static_assert(sizeof(Slot) == 64);

struct ThreadSlots {
    std::array<Slot, SizeClasses::kCount> slots{};

    /// The calling thread's; where it has none, empty ones.
    static ThreadSlots& Mine() noexcept { return *t_mineP; }

    static ThreadSlots S_notMade; ///< of a thread that has not called yet
    static ThreadSlots S_ended;   ///< of a thread that has given up its own
    // Its place is known when the library is loaded: a read costs no call.
    static __thread ThreadSlots* t_mineP __attribute__((tls_model("initial-exec")));
};

} // namespace brindle::utility
