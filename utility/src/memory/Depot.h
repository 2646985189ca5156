#pragma once

#include "threads/src/locks/FreezableMutex.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace brindle::utility {

/// Free blocks of one class, on their way between threads.
struct Magazine {
    static constexpr std::uint32_t kRoom = 126;

    /// Without blocks; null if the heap has no memory.
    static Magazine* Make() noexcept;
    static void Free(Magazine* inMagazine) noexcept;

    Magazine* next = nullptr;
    std::uint32_t count = 0;
    std::array<void*, kRoom> blocks;
};

/// How many blocks of a size a magazine takes: 16 KiB of them, where that is between 8 and all.
constexpr std::uint32_t MagazineCapacity(std::uint32_t inBlockSize) {
    std::uint32_t const blocks = 16384 / inBlockSize;
    return blocks > Magazine::kRoom ? Magazine::kRoom : blocks < 8 ? 8 : blocks;
}

/// Where threads exchange the magazines of one class, full ones for empty ones. Holds full ones of
/// at most 256 KiB. Any thread may call.
class Depot {
public:
    explicit Depot(std::uint32_t inBlockSize);
    Depot(Depot const&) = delete;
    Depot& operator=(Depot const&) = delete;

    /// A full magazine for an empty one, null if there is none.
    Magazine* ExchangeEmpty(Magazine* inEmpty) noexcept;

    /// Takes a full magazine, and gives an empty one for it if there is one: what is null else.
    /// False if the depot has enough.
    bool ExchangeFull(Magazine* inFull, Magazine*& outEmpty) noexcept;

    /// All magazines, linked by `next`.
    Magazine* TakeAll() noexcept;

    /// Keeps every other thread out, before the process is copied; and lets them in again, in the
    /// process and in its copy.
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
