#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <new>

namespace brindle::platform {

/// What a list does between its atomic steps: nothing. Tests put delays there.
struct NoDelay {
    static void Between() noexcept {}
};

/// A stack of free blocks in 8 bytes, that many threads push to and pop from without a lock. The
/// blocks lie in the 4 GiB behind the list, hold at least 4 bytes and are aligned to 4. A free
/// block's first 4 bytes are the list's; the rest keeps what it had. Blocks stay readable for as
/// long as a `Pop` may be under way.
///
/// What a thread did before it pushed a block is visible to the thread that pops it.
/// docs/concurrency/free-list.md tells why this is right.
template <typename Delay>
class BasicFreeList {
public:
    void Push(void* inBlock) noexcept { PushChain(inBlock, inBlock); }

    /// Pushes blocks that `Link` has put into a row, in one step; `inFirst` becomes the top.
    void PushChain(void* inFirst, void* inLast) noexcept {
        std::uint32_t const first = OffsetOf(inFirst);
        // Acquires nothing: what is linked to is only read by who pops.
        std::uint64_t head = mHead.load(std::memory_order_relaxed);
        do {
            WriteLink(inLast, static_cast<std::uint32_t>(head));
            Delay::Between();
        } while (!mHead.compare_exchange_weak(
            head, (head & kTag) | first, std::memory_order_release, std::memory_order_relaxed));
    }

    /// The block below `inBlock` in a row that the caller is about to push.
    void Link(void* inBlock, void* inNext) noexcept { WriteLink(inBlock, OffsetOf(inNext)); }

    /// Null if the list is empty.
    void* Pop() noexcept {
        // Acquires the link, which a pusher wrote, also when the exchange fails and gives a new
        // head.
        std::uint64_t head = mHead.load(std::memory_order_acquire);
        while (static_cast<std::uint32_t>(head) != 0) {
            void* const block = BlockAt(static_cast<std::uint32_t>(head));
            Delay::Between();
            std::uint32_t const next = ReadLink(block);
            Delay::Between();
            if (mHead.compare_exchange_weak(head, ((head & kTag) + kOnePop) | next,
                                            std::memory_order_acquire, std::memory_order_acquire)) {
                return block;
            }
        }
        return nullptr;
    }

    /// Makes a list that no other thread knows yet hold blocks that lie in a row; the last one is
    /// the top.
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
    // Low half: where the top lies behind this object, 0 if the list is empty. High half: how often
    // a block was popped, so that a head that came back is not taken for one that stayed.
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
    // The block may have been popped, and its owner may be writing to it. What is then read here
    // never gets further: the tag has changed, and the exchange fails.
    __attribute__((no_sanitize("thread"))) static std::uint32_t ReadLink(void* inBlock) noexcept {
        return *static_cast<std::uint32_t const volatile*>(inBlock);
    }

    std::atomic<std::uint64_t> mHead{0};
};

using FreeList = BasicFreeList<NoDelay>;

static_assert(sizeof(FreeList) == 8 && std::atomic<std::uint64_t>::is_always_lock_free);

} // namespace brindle::platform
