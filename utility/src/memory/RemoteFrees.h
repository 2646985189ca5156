#pragma once

#include "utility/src/base/NoPause.h"

#include <atomic>
#include <cstdint>
#include <new>

namespace brindle::utility {

/// The link of a free block: where the next one lies, counted from the origin of its chunk, which
/// is 4 bytes before the first block; 0 at the end of a list.
inline std::uint32_t ReadLink(void const* inBlock) noexcept {
    return *static_cast<std::uint32_t const*>(inBlock);
}
inline void WriteLink(void* inBlock, std::uint32_t inLink) noexcept {
    ::new (inBlock) std::uint32_t(inLink);
}

/// The blocks of a chunk that other threads than its owner gave back: a list that any thread pushes
/// to and only the owner takes, as a whole. Beside it stands whether the chunk is on its way to the
/// owner's inbox or in it.
///
/// What a thread did before `Push` is visible to who sees the blocks in `Look` or takes them.
template <typename Steps>
class BasicRemoteFrees {
public:
    struct State {
        std::uint32_t first; ///< the link to the first block, 0 if there is none
        std::uint32_t count;
        bool isQueued; ///< on its way to the inbox or in it: the chunk may not go
    };
    struct Pushed {
        bool mustQueue; ///< the caller, and nobody else, puts the chunk into the inbox
        bool isEmpty;   ///< no block of the chunk is in use any more
    };

    /// Pushes `inCount` linked blocks of which `inFirst` is the link to the first. The caller still
    /// owns them, and so the chunk is there; after the call it is there for the caller only if
    /// `mustQueue`. `inUsed` is how many blocks are in use by the owner's count.
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

    /// Takes the list and leaves the mark. For who has the owner's lock.
    State TakeAll() noexcept {
        // Changes nothing but the list, so the mark stays what the inbox makes it.
        std::uint64_t const word = mWord.fetch_and(kQueued, std::memory_order_acquire);
        return Unpack(word);
    }
    /// For who has taken the chunk out of the inbox, and is done with its place there: the next one
    /// that queues it acquires that.
    void ClearQueued() noexcept { mWord.fetch_and(~kQueued, std::memory_order_release); }
    /// For a chunk that nobody else knows.
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

    // High half: how many blocks; low half: the link to the first, and the mark.
    std::atomic<std::uint64_t> mWord{0};
};

using RemoteFrees = BasicRemoteFrees<NoPause>;

/// Chunks that wait for their owner: any thread pushes, one at a time takes all. `Node` has a
/// pointer `nextInInbox`, which belongs to the inbox while the node is in it.
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
    /// The nodes, linked, or null.
    Node* TakeAll() noexcept {
        return IsEmpty() ? nullptr : mTop.exchange(nullptr, std::memory_order_acquire);
    }
    bool IsEmpty() const noexcept { return mTop.load(std::memory_order_relaxed) == nullptr; }

private:
    std::atomic<Node*> mTop{nullptr};
};

} // namespace brindle::utility
