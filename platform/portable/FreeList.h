#pragma once

#include "utility/src/base/NoPause.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <new>

namespace brindle::platform {

/// A lock-free stack of free memory blocks, in 8 bytes. Any thread may push and pop.
///
/// The blocks lie within 4 GiB behind the list object, hold at least 4 bytes and are aligned to 4.
/// The first 4 bytes of a block on the list belong to the list, which leaves the rest as it is.
/// Blocks stay readable as long as a `Pop` may be under way.
///
/// What a thread did before it pushed a block is visible to the thread that pops it. The proof is
/// in docs/concurrency/free-list.md; `Steps` is called between the atomic steps.
template <typename Steps>
class BasicFreeList {
public:
    void Push(void* inBlock) noexcept { PushChain(inBlock, inBlock); }

    /// Pushes blocks that `Link` has chained, in one step; `inFirst` becomes the top.
    void PushChain(void* inFirst, void* inLast) noexcept {
        std::uint32_t const first = OffsetOf(inFirst);
        // Relaxed: the old top is only stored as a link, and its own link is read by the thread
        // that pops it.
        std::uint64_t head = mHead.load(std::memory_order_relaxed);
        do {
            WriteLink(inLast, static_cast<std::uint32_t>(head));
            Steps::Pause();
        } while (!mHead.compare_exchange_weak(
            head, (head & kTag) | first, std::memory_order_release, std::memory_order_relaxed));
    }

    /// Makes `inNext` the block below `inBlock` in a chain that the caller is about to push.
    void Link(void* inBlock, void* inNext) noexcept { WriteLink(inBlock, OffsetOf(inNext)); }

    /// The top, removed from the list; null if the list is empty.
    void* Pop() noexcept {
        // Acquires the link of the top, which its pusher wrote; so does a failed exchange, which
        // reads a new head.
        std::uint64_t head = mHead.load(std::memory_order_acquire);
        while (static_cast<std::uint32_t>(head) != 0) {
            void* const block = BlockAt(static_cast<std::uint32_t>(head));
            Steps::Pause();
            std::uint32_t const next = ReadLink(block);
            Steps::Pause();
            if (mHead.compare_exchange_weak(head, ((head & kTag) + kOnePop) | next,
                                            std::memory_order_acquire, std::memory_order_acquire)) {
                return block;
            }
        }
        return nullptr;
    }

    /// Fills a list that no other thread knows yet with `inCount` blocks, `inStride` bytes apart;
    /// the last one becomes the top.
    void Fill(std::byte* inFirst, std::uint32_t inStride, std::uint32_t inCount) noexcept {
        std::uint32_t top = 0;
        for (std::uint32_t i = 0; i < inCount; ++i) {
            std::byte* const block = inFirst + std::size_t{i} * inStride;
            WriteLink(block, top);
            top = OffsetOf(block);
        }
        mHead.store(top, std::memory_order_relaxed);
    }

private:
    // Low half: the distance of the top from this object in bytes, 0 if the list is empty. High
    // half, the tag: how many blocks were popped, modulo 2^32. It tells a head that was changed and
    // changed back from one that was not (ABA).
    static constexpr std::uint64_t kTag = 0xFFFFFFFF00000000U;
    static constexpr std::uint64_t kOnePop = 0x100000000U;

    std::uint32_t OffsetOf(void const* inBlock) const noexcept {
        return static_cast<std::uint32_t>(static_cast<std::byte const*>(inBlock) -
                                          reinterpret_cast<std::byte const*>(this));
    }
    void* BlockAt(std::uint32_t inOffset) noexcept {
        return reinterpret_cast<std::byte*>(this) + inOffset;
    }

    static void WriteLink(void* inBlock, std::uint32_t inLink) noexcept {
        ::new (inBlock) std::uint32_t(inLink);
    }
    // Another thread may have popped the block, and its owner may be writing to it. Then the value
    // that is read here is not used: the tag has changed, so the exchange fails.
    __attribute__((no_sanitize("thread"))) static std::uint32_t ReadLink(void* inBlock) noexcept {
        return *static_cast<std::uint32_t const volatile*>(inBlock);
    }

    std::atomic<std::uint64_t> mHead{0};
};

using FreeList = BasicFreeList<utility::NoPause>;

static_assert(sizeof(FreeList) == 8 && std::atomic<std::uint64_t>::is_always_lock_free);

} // namespace brindle::platform
