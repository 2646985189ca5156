#pragma once

#include "utility/src/memory/Depot.h"
#include "utility/src/memory/SizeClasses.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace brindle::utility {

/// A thread's own free blocks of the classes that keep a chunk, two magazines of each: one in hand
/// and a spare, so that a thread at the edge of one does not go to the depot each time.
class ThreadStock {
public:
    /// The calling thread's. Until it has one, and when it has no more, one that is empty and takes
    /// nothing.
    static ThreadStock& Mine() noexcept { return *t_mineP; }

    /// False if there is none in hand.
    bool Take(std::size_t inClass, void*& outBlock) noexcept {
        Slot& slot = mSlots[inClass];
        if (slot.last > kTakesNone) {
            outBlock = reinterpret_cast<void*>(std::exchange(slot.last, 0));
            return true;
        }
        if (slot.top == slot.bottom) {
            return false;
        }
        outBlock = *--slot.top;
        return true;
    }
    /// False if there is no room in hand.
    bool Give(std::size_t inClass, void* inBlock) noexcept {
        Slot& slot = mSlots[inClass];
        if (slot.last == 0) {
            slot.last = reinterpret_cast<std::uintptr_t>(inBlock);
            return true;
        }
        if (slot.top == slot.limit) {
            return false;
        }
        *slot.top++ = inBlock;
        return true;
    }

    /// When `Take` had none, and `Give` no room, the managers being ready: by way of the spare, the
    /// depot or the manager. `TakeSlowly` throws `std::bad_alloc`.
    static void* TakeSlowly(std::size_t inClass);
    static void GiveSlowly(std::size_t inClass, void* inBlock) noexcept;

    /// Gives what the calling thread has, and the depots, back to the managers.
    static void ReleaseAll() noexcept;

private:
    static constexpr std::uintptr_t kTakesNone = 1;
    static constexpr std::uint32_t kFirstRefill = 4;

    struct alignas(64) Slot {
        // The block given last, which is the next to be taken: so the processor need not wait for
        // `top`, which both read and write. 0 if there is none, `kTakesNone` before the first use.
        std::uintptr_t last = kTakesNone;
        void** top = nullptr; ///< where the next block goes in the magazine in hand
        void** bottom = nullptr;
        void** limit = nullptr;
        Magazine* inHand = nullptr;
        Magazine* spare = nullptr;           ///< full or empty
        std::uint32_t refill = kFirstRefill; ///< how many blocks to ask the manager for

        void Load(Magazine* inMagazine, std::uint32_t inCapacity) noexcept;
        Magazine* Unload() noexcept;
    };
    static void EndThread(void* inStock) noexcept;
    static ThreadStock* MineOrMade() noexcept;
    static bool FindBlocks(std::size_t inClass, Slot& ioSlot);
    static bool FindRoom(std::size_t inClass, Slot& ioSlot) noexcept;
    void Release() noexcept;

    static ThreadStock S_notMade;
    static ThreadStock S_ended;
    // Its place is known when the library is loaded: a read costs no call.
    static __thread ThreadStock* t_mineP __attribute__((tls_model("initial-exec")));

    std::array<Slot, SizeClasses::kStocked> mSlots;
};

} // namespace brindle::utility
