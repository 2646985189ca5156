#pragma once

#include <pthread.h>
#include <sched.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <new>

namespace brindle::platform {

/// Where threads announce which shared object they are about to touch, so that whoever unlinks one
/// can tell whether it may be freed yet. Any thread may call any operation; none may be under way
/// when the slots go.
///
/// `Steps::Pause()` stands between the atomic steps; it does nothing but in tests.
template <typename Steps>
class HazardSlots {
    struct Slot {
        std::atomic<void const*> object{nullptr};
        std::array<char, 56> apart; // each slot has its own cache line
    };

public:
    enum class NoSlot { kGiveUp, kYield };

    /// Keeps what `inSource` points to from being freed. If every slot is taken and there is no
    /// memory for more, it either claims none or lets the threads in the slots go first.
    template <typename Object>
    class Hazard {
    public:
        Hazard(HazardSlots& ioSlots, std::atomic<Object*> const& inSource, NoSlot inNoSlot) noexcept
            : mSource(inSource), mObject(inSource.load()), mSlot(ioSlots.Claim(mObject)) {
            while (mSlot == nullptr && inNoSlot == NoSlot::kYield) {
                sched_yield();
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

        bool IsClaimed() const noexcept { return mSlot != nullptr; }
        Object* Get() const noexcept { return mObject; }

        /// Lets go of the object and turns to what the source points to now.
        void Renew() noexcept {
            mObject = mSource.load();
            mSlot->object.store(mObject);
            Confirm();
        }

    private:
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

    /// Whether somebody may still touch the object, which no source points to any more.
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
    static constexpr std::size_t kSlots = 32;

    struct Block {
        std::array<Slot, kSlots> slots;
        std::atomic<Block*> next{nullptr};
    };

    /// Null if all slots are taken and there is no memory for more.
    Slot* Claim(void const* inObject) noexcept {
        // Threads start at different slots, and find their own one free again.
        std::size_t const start = static_cast<std::size_t>(pthread_self()) * 0x9E3779B97F4A7C15 >>
                                  (sizeof(std::size_t) * 8 - 5);
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
