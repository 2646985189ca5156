#pragma once

#include "threads/src/locks/FreezableMutex.h"
#include "utility/src/base/ThreadAnnotations.h"
#include "utility/src/memory/Region.h"

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace brindle::utility {

/// Maps regions from the system and unmaps them. A few free regions are kept for the next request.
class RegionStore {
public:
    RegionStore() = default;
    RegionStore(RegionStore const&) = delete;
    RegionStore& operator=(RegionStore const&) = delete;

    /// Null if the system has no memory. Any thread may call.
    Region* Allocate() noexcept;
    void Free(Region& inRegion) noexcept;
    /// Unmaps the regions that are kept.
    void ReleaseAll() noexcept;
    /// The bytes of the regions that are kept.
    std::size_t Kept();

    void CloseForFork() BRN_ACQUIRE(mMutex) { mMutex.Freeze(); }
    void OpenInParent() BRN_RELEASE(mMutex) { mMutex.Thaw(); }
    void OpenInChild() BRN_RELEASE(mMutex) { mMutex.ThawInChild(); }

    /// Whether a block lies in a region. Any thread may ask about a block that it owns, or about
    /// null, while others allocate and free.
    static bool Holds(void const* inBlock) noexcept {
        auto const address = reinterpret_cast<std::uintptr_t>(inBlock);
        std::size_t const leaf = address >> kLeafShift;
        if (leaf >= kLeaves) {
            return false;
        }
        Mark const* const marks = S_leaves[leaf].load(std::memory_order_acquire);
        return marks != nullptr &&
               marks[address >> 20 & (kMarks - 1)].load(std::memory_order_relaxed);
    }

    /// The region of a block, found by one load. May be null for a block that lies in a region;
    /// then `Holds` decides.
    static Region* Known(void const* inBlock) noexcept {
        Region* const known = KnownAt(inBlock).load(std::memory_order_relaxed);
        auto const difference =
            reinterpret_cast<std::uintptr_t>(known) ^ reinterpret_cast<std::uintptr_t>(inBlock);
        return difference < Region::kSize ? known : nullptr;
    }

private:
    static constexpr std::size_t kKnown = 1024;
    static std::atomic<Region*>& KnownAt(void const* inBlock) noexcept {
        return S_known[reinterpret_cast<std::uintptr_t>(inBlock) >> 20 & (kKnown - 1)];
    }

    static constexpr std::size_t kKeptAtMost = 8;
    static constexpr unsigned kLeafShift = 35;
    static constexpr std::size_t kLeaves = std::size_t{1} << (48 - kLeafShift);
    static constexpr std::size_t kMarks = std::size_t{1} << (kLeafShift - 20); // one for each MiB
    using Mark = std::atomic<bool>;

    static Mark* MarksFor(std::uintptr_t inAddress) noexcept;
    static void Unmap(Region& inRegion) noexcept;

    // Which MiB of the address space are regions: one leaf for each 32 GiB, allocated when the
    // first region is mapped there and never freed.
    static std::atomic<Mark*> S_leaves[kLeaves];

    // A direct-mapped cache of regions by the low bits of their number: a later region replaces an
    // earlier one with the same bits.
    static std::atomic<Region*> S_known[kKnown];

    threads::FreezableMutex mMutex;
    Region* mKept BRN_GUARDED_BY(mMutex) = nullptr;
    std::size_t mKeptCount BRN_GUARDED_BY(mMutex) = 0;
};

} // namespace brindle::utility
