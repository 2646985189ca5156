#pragma once

#include "platform/Errors.h"

#include <array>
#include <cstdint>

namespace brindle::platform {

/// A new UUID of version 4, as 16 bytes in the order of its text, from the system's source of
/// random bytes. Any thread may call, also in the child of a fork. Error: 31 the system has no such
/// source, or refuses it; the bytes are 0 then.
Result<std::array<std::uint8_t, 16>> CreateUuid();

} // namespace brindle::platform
