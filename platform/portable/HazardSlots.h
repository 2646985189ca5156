#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <thread>

namespace brindle::platform {

/// Safe memory reclamation by hazard pointers. Threads announce in these slots which shared object
/// they are about to access, so that a thread that has unlinked an object can tell whether it may
/// free it yet. Any thread may call any operation; none may be in progress when the slots are
/// destroyed.
///
/// There are `kSlots` slots to begin with, and as many more whenever all are taken. `Steps` is
/// called between the atomic steps.
template <typename Steps, std::size_t kSlots>
class HazardSlots {
    struct Slot {
        std::atomic<void const*> object{nullptr};
        std::array<char, 56> padding; // each slot has its own cache line
    };

public:
    /// What a hazard does if every slot is taken and there is no memory for more.
    enum class NoSlot {
        kGiveUp, ///< claims none
        kYield   ///< lets other threads run until a slot is free
    };

    /// Keeps the object that `inSource` points to from being freed, until the hazard is destroyed
    /// or renewed.
    template <typename Object>
    class Hazard {
    public:
        Hazard(HazardSlots& ioSlots, std::atomic<Object*> const& inSource, NoSlot inNoSlot) noexcept
            : mSource(inSource), mObject(inSource.load()), mSlot(ioSlots.Claim(mObject)) {
            while (mSlot == nullptr && inNoSlot == NoSlot::kYield) {
                std::this_thread::yield();
                mObject = mSource.load();
                mSlot = ioSlots.Claim(mObject);
            }
            if (mSlot != nullptr) {
                Confirm();
            }
        }
        Hazard(Hazard const&) = delete;
        Hazard& operator=(Hazard const&) = delete;
        ~Hazard() {
            if (mSlot != nullptr) {
                mSlot->object.store(nullptr, std::memory_order_release);
            }
        }

        /// False only with `NoSlot::kGiveUp`; then the object is not protected.
        bool IsClaimed() const noexcept { return mSlot != nullptr; }
        Object* Get() const noexcept { return mObject; }

        /// Releases the object, and protects the one that the source points to now.
        void Renew() noexcept {
            mObject = mSource.load();
            mSlot->object.store(mObject);
            Confirm();
        }

    private:
        /// The announcement counts only if the source still points to the object after it was made.
        void Confirm() noexcept {
            for (;;) {
                Steps::Pause();
                Object* const object = mSource.load();
                if (object == mObject) {
                    return;
                }
                mObject = object;
                mSlot->object.store(object);
            }
        }

        std::atomic<Object*> const& mSource;
        Object* mObject;
        Slot* mSlot;
    };

    HazardSlots() = default;
    HazardSlots(HazardSlots const&) = delete;
    HazardSlots& operator=(HazardSlots const&) = delete;
    ~HazardSlots() {
        for (Block* block = mFirst.next.load(); block != nullptr;) {
            Block* const next = block->next.load();
            delete block;
            block = next;
        }
    }

    /// Whether a thread may still access the object, which no source points to any more.
    bool IsProtected(void const* inObject) const noexcept {
        for (Block const* block = &mFirst; block != nullptr; block = block->next) {
            for (Slot const& slot : block->slots) {
                if (slot.object.load() == inObject) {
                    return true;
                }
            }
        }
        return false;
    }

private:
    struct Block {
        std::array<Slot, kSlots> slots;
        std::atomic<Block*> next{nullptr};
    };

    /// Where a thread begins to look for a free slot: threads are spread, and each comes back to
    /// its own.
    static std::size_t FirstSlot() noexcept {
        std::thread::id const thread = std::this_thread::get_id();
        std::uint64_t bytes = 0;
        static_assert(sizeof(thread) <= sizeof(bytes));
        std::memcpy(&bytes, &thread, sizeof(thread));
        return static_cast<std::size_t>(bytes * 0x9E3779B97F4A7C15U >> 32) % kSlots;
    }

    /// Null if all slots are taken and there is no memory for more.
    Slot* Claim(void const* inObject) noexcept {
        std::size_t const start = FirstSlot();
        for (Block* block = &mFirst;;) {
            for (std::size_t i = 0; i < kSlots; ++i) {
                Slot& slot = block->slots[(start + i) % kSlots];
                void const* free = nullptr;
                if (slot.object.compare_exchange_strong(free, inObject)) {
                    return &slot;
                }
            }
            Block* next = block->next;
            if (next == nullptr) {
                auto* const fresh = new (std::nothrow) Block;
                if (fresh == nullptr) {
                    return nullptr;
                }
                if (block->next.compare_exchange_strong(next, fresh)) {
                    next = fresh;
                } else {
                    delete fresh;
                }
            }
            block = next;
        }
    }

    Block mFirst;
};

} // namespace brindle::platform
