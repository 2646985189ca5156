#pragma once

#include "platform/CompletionPort.h"
#include "platform/portable/PacketQueue.h"
#include "platform/portable/Sleepers.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace brindle::platform {

/// What a completion port is made of: a queue, and those who sleep as long as it is empty.
/// `Steps::Pause()` stands between the atomic steps; it does nothing but in tests.
template <typename Steps, std::size_t kSlots>
class PacketPort {
public:
    bool Post(void* inPacket) noexcept {
        if (!mPackets.Append(inPacket)) {
            if (inPacket != nullptr) {
                return false;
            }
            mBareWakeUps.fetch_add(1);
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
        return inMilliseconds != 0 &&
               SleepAndTake(outPacket, inMilliseconds == CompletionPort::kForever
                                           ? Deadline::Never()
                                           : Deadline::In(inMilliseconds));
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
                // Whoever posted more meanwhile relied on this thread to look.
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

    bool Take(void*& outPacket) noexcept { return mPackets.Take(outPacket) || TakeBareWakeUp(); }

    bool TakeBareWakeUp() noexcept {
        std::uint32_t count = mBareWakeUps.load();
        while (count > 0) {
            if (mBareWakeUps.compare_exchange_weak(count, count - 1)) {
                return true;
            }
        }
        return false;
    }

    bool IsEmpty() noexcept { return mPackets.IsEmpty() && mBareWakeUps.load() == 0; }

    PacketQueue<Steps, kSlots> mPackets;
    Sleepers<Steps> mSleepers;
    std::array<char, 48> mApart;
    std::atomic<std::uint32_t> mBareWakeUps{0}; // null packets that there was no memory for
};

} // namespace brindle::platform
