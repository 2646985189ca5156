#pragma once

#include "platform/CompletionPort.h"
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

    bool Wait(void*& outPacket, std::uint32_t inMilliseconds) noexcept {
        outPacket = nullptr;
        if (Take(outPacket)) {
            return true;
        }
        if (inMilliseconds == 0) {
            return false;
        }
        Deadline deadline;
        if (inMilliseconds != CompletionPort::kForever) {
            deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(inMilliseconds);
        }
        return SleepAndTake(outPacket, deadline);
    }

private:
    bool SleepAndTake(void*& outPacket, Deadline const& inDeadline) noexcept {
        for (;;) {
            Steps::Pause();
            mSleepers.Enroll();
            Steps::Pause();
            if (Take(outPacket)) {
                mSleepers.Withdraw();
                return true;
            }
            bool const isWoken = mSleepers.Sleep(inDeadline);
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

    bool Take(void*& outPacket) noexcept { return mPackets.Take(outPacket) || TakeUnqueuedNull(); }

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
