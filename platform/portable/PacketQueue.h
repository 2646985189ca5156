#pragma once

#include "platform/portable/HazardSlots.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>

namespace brindle::platform {

/// An unbounded lock-free queue of pointers, first in first out across all threads. Any thread may
/// call any operation; none may be in progress when the queue is destroyed.
///
/// It is a list of segments. Posters and takers draw the indices of slots from two counters of each
/// segment. A poster fills the slot that it drew. A taker that finds its slot still unfilled closes
/// it, and the poster draws another. The proof is in docs/concurrency/completion-port.md; `Steps`
/// is called between the atomic steps.
template <typename Steps, std::size_t kSlots, std::size_t kHazardSlots = 32>
class PacketQueue {
public:
    /// Throws `std::bad_alloc`.
    PacketQueue() : mHead(new Segment), mTail(mHead.load()) {}
    PacketQueue(PacketQueue const&) = delete;
    PacketQueue& operator=(PacketQueue const&) = delete;
    ~PacketQueue() {
        for (Segment* segment = mHead.load(); segment != nullptr;) {
            delete std::exchange(segment, segment->next.load());
        }
        for (Segment* segment = mRetired.load(); segment != nullptr;) {
            delete std::exchange(segment, segment->nextRetired);
        }
    }

    /// False, with nothing appended, if there is no memory.
    [[nodiscard]] bool Append(void* inPacket) noexcept {
        void* const packet = inPacket == nullptr ? &S_null : inPacket;
        Hazard tail(mHazards, mTail, NoSlot::kGiveUp);
        if (!tail.IsClaimed()) {
            return false;
        }
        for (;;) {
            Segment& segment = *tail.Get();
            std::uint64_t const index = segment.posts.fetch_add(1);
            Steps::Pause();
            if (index < kSlots) {
                void* unfilled = nullptr;
                if (segment.slots[index].compare_exchange_strong(
                        unfilled, packet, std::memory_order_release, std::memory_order_relaxed)) {
                    return true;
                }
                continue; // a taker has closed the slot
            }
            Segment* next = segment.next;
            if (next == nullptr) {
                std::unique_ptr<Segment> fresh(new (std::nothrow) Segment(packet));
                if (fresh == nullptr) {
                    return false;
                }
                Steps::Pause();
                if (segment.next.compare_exchange_strong(next, fresh.get())) {
                    Steps::Pause();
                    Advance(mTail, segment, *fresh.release());
                    return true;
                }
            }
            Advance(mTail, segment, *next);
            tail.Renew();
        }
    }

    /// Removes the oldest packet. False if there is none.
    bool Take(void*& outPacket) noexcept {
        Hazard head(mHazards, mHead, NoSlot::kYield);
        while (Segment* const segment = FindPackets(head)) {
            std::uint64_t const index = segment->takes.fetch_add(1);
            Steps::Pause();
            if (index >= kSlots) {
                continue;
            }
            std::atomic<void*>& slot = segment->slots[index];
            // If its poster is about to fill it, a short wait is cheaper than another draw for
            // both.
            for (int i = 0; i < kPatience && slot.load(std::memory_order_relaxed) == nullptr; ++i) {
            }
            void* const packet = slot.exchange(&S_closed, std::memory_order_acquire);
            if (packet != nullptr) {
                outPacket = packet == &S_null ? nullptr : packet;
                return true;
            }
        }
        return false;
    }

    bool IsEmpty() noexcept {
        Hazard head(mHazards, mHead, NoSlot::kYield);
        return FindPackets(head) == nullptr;
    }

private:
    static constexpr int kPatience = 64;

    struct Segment {
        Segment() = default;
        explicit Segment(void* inFirst) : posts(1) {
            slots[0].store(inFirst, std::memory_order_relaxed);
        }

        std::atomic<std::uint64_t> posts{0};
        std::array<char, 56> postsPadding;
        std::atomic<std::uint64_t> takes{0};
        std::array<char, 56> takesPadding;
        std::atomic<Segment*> next{nullptr};
        Segment* nextRetired = nullptr;
        std::array<std::atomic<void*>, kSlots> slots{};
    };

    using Hazards = HazardSlots<Steps, kHazardSlots>;
    using Hazard = typename Hazards::template Hazard<Segment>;
    using NoSlot = typename Hazards::NoSlot;

    /// The first segment in which a poster has drawn a slot that no taker has drawn; null if there
    /// is none. Unlinks the segments before it.
    Segment* FindPackets(Hazard& ioHead) noexcept {
        for (;;) {
            Segment& segment = *ioHead.Get();
            // In this order: if both counters are equal, every slot that posters had drawn by the
            // second read had been drawn by takers at the first.
            std::uint64_t const takes = segment.takes.load();
            Steps::Pause();
            if (takes < kSlots) {
                return takes < segment.posts.load() ? &segment : nullptr;
            }
            Segment* const next = segment.next.load();
            if (next == nullptr) {
                return nullptr;
            }
            Advance(mTail, segment, *next); // no thread gets to a retired segment through the tail
            Steps::Pause();
            bool const isMine = Advance(mHead, segment, *next);
            ioHead.Renew();
            if (isMine) {
                Retire(segment);
            }
        }
    }

    static bool Advance(std::atomic<Segment*>& ioEnd, Segment& inFrom, Segment& inTo) noexcept {
        Segment* from = &inFrom;
        return ioEnd.compare_exchange_strong(from, &inTo);
    }

    /// Frees this segment and those retired before it, except those that other threads may still
    /// access.
    void Retire(Segment& ioSegment) noexcept {
        PushRetired(ioSegment);
        Segment* segment = mRetired.exchange(nullptr, std::memory_order_acquire);
        while (segment != nullptr) {
            Segment* const next = segment->nextRetired;
            if (mHazards.IsProtected(segment)) {
                PushRetired(*segment);
            } else {
                delete segment;
            }
            segment = next;
        }
    }

    void PushRetired(Segment& ioSegment) noexcept {
        ioSegment.nextRetired = mRetired.load(std::memory_order_relaxed);
        do {
            Steps::Pause();
        } while (!mRetired.compare_exchange_weak(ioSegment.nextRetired, &ioSegment,
                                                 std::memory_order_release,
                                                 std::memory_order_relaxed));
    }

    // Their addresses stand in a slot for a null packet, and for a slot that a taker has closed.
    inline static char S_null = 0;
    inline static char S_closed = 0;

    std::atomic<Segment*> mHead;
    std::array<char, 56> mHeadPadding;
    std::atomic<Segment*> mTail;
    std::array<char, 56> mTailPadding;
    std::atomic<Segment*> mRetired{nullptr};
    Hazards mHazards;
};

} // namespace brindle::platform
