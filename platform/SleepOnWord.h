#pragma once

#include "platform/Deadline.h"

#include <cstdint>

// How the queues of platform/portable/ have threads sleep.

namespace brindle::platform {

/// The mask of a sleeper that any waker may wake, and of a waker that wakes any sleeper.
constexpr std::uint32_t kAnySleeper = 0xFFFFFFFF;

/// Sleeps as long as the word has this value, until `WakeOnWord` wakes it by a mask that has a bit
/// in common with `inMask`, which is not 0. The word is compared and the caller put to sleep in one
/// step, so that no wake-up after a change of the word is missed. May return early for no reason.
/// False if the deadline has come.
bool SleepOnWord(std::uint32_t* inWord, std::uint32_t inValue, std::uint32_t inMask,
                 Deadline const& inDeadline) noexcept;

/// Wakes one thread that sleeps on the word by a mask that has a bit in common with `inMask`; a
/// system without such masks may wake any thread that sleeps on the word. False if there was none.
bool WakeOnWord(std::uint32_t* inWord, std::uint32_t inMask) noexcept;

} // namespace brindle::platform
