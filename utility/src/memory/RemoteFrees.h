#pragma once

#include "utility/src/base/NoPause.h"

#include <atomic>
#include <cstdint>
#include <new>

namespace brindle::utility {

/// The link in a free block: the offset of the next free block from the origin of the chunk, which
/// is 4 bytes before the first block; 0 at the end of a list.
inline std::uint32_t ReadLink(void const* inBlock) noexcept {
    return *static_cast<std::uint32_t const*>(inBlock);
}
inline void WriteLink(void* inBlock, std::uint32_t inLink) noexcept {
    ::new (inBlock) std::uint32_t(inLink);
}

/// The remote frees of a chunk: a lock-free intrusive list of the blocks that other threads than
/// the owner freed. Any thread pushes; one thread at a time takes the whole list: the owner, or a
/// thread that holds the owner's lock. The same word records whether the chunk is queued, that is,
/// in the heap's inbox or about to be pushed there.
///
/// `Push` releases; `Look` and `TakeAll` acquire.
template <typename Steps>
class BasicRemoteFrees {
public:
    struct State {
        std::uint32_t first; ///< the link to the first block, 0 if there is none
        std::uint32_t count;
        bool isQueued; ///< in the inbox or about to be: the chunk must not be reclaimed
    };
    struct Pushed {
        bool mustQueue; ///< the caller alone has to push the chunk to the inbox
        bool isEmpty;   ///< no block of the chunk is in use any more
    };

    /// Pushes `inCount` linked blocks, the first at link `inFirst`. Until the call the caller owns
    /// them, so the chunk cannot be reclaimed; after it the caller may touch the chunk only if
    /// `mustQueue`. `inUsed` is `Chunk::used` as read before the call.
    Pushed Push(std::uint32_t inFirst, void* inLast, std::uint32_t inCount,
                std::uint32_t inUsed) noexcept {
        std::uint64_t word = mWord.load(std::memory_order_relaxed);
        for (;;) {
            State const state = Unpack(word);
            WriteLink(inLast, state.first);
            bool const isEmpty = inUsed == state.count + inCount;
            bool const mustQueue = !state.isQueued && (state.first == 0 || isEmpty);
            Steps::Pause();
            if (mWord.compare_exchange_weak(
                    word, Pack({inFirst, state.count + inCount, state.isQueued || mustQueue}),
                    std::memory_order_acq_rel, std::memory_order_relaxed)) {
                return {mustQueue, isEmpty};
            }
        }
    }

    State Look() const noexcept { return Unpack(mWord.load(std::memory_order_acquire)); }
    std::uint32_t Count() const noexcept {
        return static_cast<std::uint32_t>(mWord.load(std::memory_order_relaxed) >> 32);
    }

    /// Takes the list and leaves the queued mark. For the owner, or with its lock.
    State TakeAll() noexcept {
        // The mark belongs to the inbox, so nothing but the list is cleared.
        std::uint64_t const word = mWord.fetch_and(kQueued, std::memory_order_acquire);
        return Unpack(word);
    }
    /// Clears the mark, for the thread that took the chunk out of the inbox and has read
    /// `nextInInbox`: the next push that queues the chunk acquires this release.
    void ClearQueued() noexcept { mWord.fetch_and(~kQueued, std::memory_order_release); }
    /// For a chunk that no other thread can reach.
    void Reset() noexcept { mWord.store(0, std::memory_order_relaxed); }

private:
    static constexpr std::uint64_t kQueued = 0x80000000U;

    static State Unpack(std::uint64_t inWord) noexcept {
        return {static_cast<std::uint32_t>(inWord & ~kQueued),
                static_cast<std::uint32_t>(inWord >> 32), (inWord & kQueued) != 0};
    }
    static std::uint64_t Pack(State const& inState) noexcept {
        return std::uint64_t{inState.count} << 32 | inState.first |
               (inState.isQueued ? kQueued : 0);
    }

    // High half: the number of blocks. Low half: the link to the first, and the queued mark.
    std::atomic<std::uint64_t> mWord{0};
};

using RemoteFrees = BasicRemoteFrees<NoPause>;

/// A lock-free intrusive stack of chunks that the owner has to look at: any thread pushes, one
/// thread at a time takes all. `Node` has a pointer `nextInInbox`, which belongs to the inbox while
/// the node is in it.
template <typename Node, typename Steps>
class BasicInbox {
public:
    void Push(Node* inNode) noexcept {
        Node* top = mTop.load(std::memory_order_relaxed);
        do {
            inNode->nextInInbox = top;
            Steps::Pause();
        } while (!mTop.compare_exchange_weak(top, inNode, std::memory_order_release,
                                             std::memory_order_relaxed));
    }
    /// The linked nodes, null if there are none.
    Node* TakeAll() noexcept {
        return IsEmpty() ? nullptr : mTop.exchange(nullptr, std::memory_order_acquire);
    }
    bool IsEmpty() const noexcept { return mTop.load(std::memory_order_relaxed) == nullptr; }

private:
    std::atomic<Node*> mTop{nullptr};
};

} // namespace brindle::utility
