#pragma once

#include "utility/src/memory/Depot.h"
#include "utility/src/memory/SizeClasses.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace brindle::utility {

/// A thread's own free blocks of the classes that keep a chunk. It has two magazines of each, one
/// in hand and a spare, so that a thread that swings around an empty or a full one does not visit
/// the depot each time.
class ThreadStock {
public:
    /// The stock of the calling thread. Before the thread has one, and after it has lost it, this
    /// is a stock that is empty and takes nothing.
    static ThreadStock& Mine() noexcept { return *t_mineP; }

    /// Returns false if there is no block in hand.
    [[nodiscard]] bool Take(std::size_t inClass, void*& outBlock) noexcept {
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
    /// Returns false if there is no room in hand.
    [[nodiscard]] bool Give(std::size_t inClass, void* inBlock) noexcept {
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

    /// To be called after `Take` or `Give` returned false, once the managers are ready: use the
    /// spare magazine, the depot or the manager. `TakeSlowly` throws `std::bad_alloc`.
    [[nodiscard]] static void* TakeSlowly(std::size_t inClass);
    static void GiveSlowly(std::size_t inClass, void* inBlock) noexcept;

    /// Returns the stock of the calling thread, and the contents of the depots, to the managers.
    static void ReleaseAll() noexcept;

private:
    static constexpr std::uintptr_t kTakesNone = 1;
    static constexpr std::uint32_t kFirstRefill = 4;

    struct alignas(64) Slot {
        // The block given last, which is taken next: it saves waiting for `top`, which both giving
        // and taking read and write. 0 if there is none, `kTakesNone` before the first use.
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
    [[nodiscard]] static bool FindBlocks(std::size_t inClass, Slot& ioSlot);
    [[nodiscard]] static bool FindRoom(std::size_t inClass, Slot& ioSlot) noexcept;
    void Release() noexcept;

    static ThreadStock S_notMade;
    static ThreadStock S_ended;
    // With this model the offset is fixed when the library is loaded, so reading it takes no call.
    static __thread ThreadStock* t_mineP __attribute__((tls_model("initial-exec")));

    std::array<Slot, SizeClasses::kStocked> mSlots;
};

} // namespace brindle::utility
