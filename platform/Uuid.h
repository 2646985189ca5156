#pragma once

#include "platform/Errors.h"

#include <array>
#include <cstdint>

namespace brindle::platform {

/// A new UUID of version 4, as 16 bytes in the order in which its text shows them, from the
/// system's random number generator. Any thread may call, also in the child of a fork. Error: 31
/// the system has no such generator, or refuses it.
Result<std::array<std::uint8_t, 16>> CreateUuid();

} // namespace brindle::platform
