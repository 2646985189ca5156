#pragma once

#include "threads/src/locks/FreezableMutex.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace brindle::utility {

/// An array of free blocks of one class, which passes from thread to thread.
struct Magazine {
    static constexpr std::uint32_t kRoom = 126;

    /// Makes an empty one; null without memory.
    [[nodiscard]] static Magazine* Make() noexcept;
    static void Free(Magazine* inMagazine) noexcept;

    Magazine* next = nullptr;
    std::uint32_t count = 0;
    std::array<void*, kRoom> blocks;
};

/// How many blocks of a size a magazine takes: 16 KiB of them, but at least 8 and at most `kRoom`.
constexpr std::uint32_t MagazineCapacity(std::uint32_t inBlockSize) {
    std::uint32_t const blocks = 16384 / inBlockSize;
    return blocks > Magazine::kRoom ? Magazine::kRoom : blocks < 8 ? 8 : blocks;
}

/// Where threads exchange magazines of one class, full ones for empty ones. Holds at most 256 KiB
/// of blocks. Any thread may call.
class Depot {
public:
    explicit Depot(std::uint32_t inBlockSize);
    Depot(Depot const&) = delete;
    Depot& operator=(Depot const&) = delete;

    /// Returns a full magazine in exchange for an empty one; null, and takes nothing, if there is
    /// none.
    [[nodiscard]] Magazine* ExchangeEmpty(Magazine* inEmpty) noexcept;

    /// Takes a full magazine and stores an empty one in `outEmpty`, or null if it has none. Returns
    /// false, and takes nothing, if the depot is full.
    [[nodiscard]] bool ExchangeFull(Magazine* inFull, Magazine*& outEmpty) noexcept;

    /// Gives away all magazines, linked by `next`.
    [[nodiscard]] Magazine* TakeAll() noexcept;

    /// Keeps all other threads out before a fork; lets them in again afterwards, in the parent and
    /// in the child.
    void CloseForFork() BRN_ACQUIRE(mMutex) { mMutex.Freeze(); }
    void OpenInParent() BRN_RELEASE(mMutex) { mMutex.Thaw(); }
    void OpenInChild() BRN_RELEASE(mMutex) { mMutex.ThawInChild(); }

private:
    threads::FreezableMutex mMutex;
    Magazine* mFull BRN_GUARDED_BY(mMutex) = nullptr;
    Magazine* mEmpty BRN_GUARDED_BY(mMutex) = nullptr;
    std::uint32_t mFullCount BRN_GUARDED_BY(mMutex) = 0;
    std::uint32_t const mLimit;
};

} // namespace brindle::utility
