#pragma once

#include "platform/Deadline.h"
#include "platform/portable/PacketQueue.h"
#include "platform/portable/Sleepers.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace brindle::platform {

/// The completion port: a queue, and the threads that sleep while it is empty. `Steps` is called
/// between the atomic steps.
template <typename Steps, std::size_t kSlots>
class PacketPort {
public:
    [[nodiscard]] bool Post(void* inPacket) noexcept {
        if (!mPackets.Append(inPacket)) {
            if (inPacket != nullptr) {
                return false;
            }
            mUnqueuedNulls.fetch_add(1);
        }
        Steps::Pause();
        mSleepers.WakeOne();
        return true;
    }

    bool Take(void*& outPacket) noexcept {
        outPacket = nullptr;
        return mPackets.Take(outPacket) || TakeUnqueuedNull();
    }

    bool Wait(void*& outPacket, Deadline const& inDeadline) noexcept {
        if (Take(outPacket)) {
            return true;
        }
        for (;;) {
            Steps::Pause();
            auto const enrolment = mSleepers.Enroll();
            Steps::Pause();
            if (Take(outPacket)) {
                mSleepers.Withdraw();
                return true;
            }
            bool const isWoken = mSleepers.Sleep(enrolment, inDeadline);
            Steps::Pause();
            if (Take(outPacket)) {
                // Posts that came while this thread's wake-up was unclaimed have woken nobody.
                if (isWoken && !IsEmpty()) {
                    mSleepers.WakeOne();
                }
                return true;
            }
            if (!isWoken) {
                return false;
            }
        }
    }

private:
    bool TakeUnqueuedNull() noexcept {
        std::uint32_t count = mUnqueuedNulls.load();
        while (count > 0) {
            if (mUnqueuedNulls.compare_exchange_weak(count, count - 1)) {
                return true;
            }
        }
        return false;
    }

    bool IsEmpty() noexcept { return mPackets.IsEmpty() && mUnqueuedNulls.load() == 0; }

    PacketQueue<Steps, kSlots> mPackets;
    Sleepers<Steps> mSleepers;
    std::array<char, 48> mPadding;
    std::atomic<std::uint32_t> mUnqueuedNulls{0}; // null packets that the queue had no memory for
};

} // namespace brindle::platform
