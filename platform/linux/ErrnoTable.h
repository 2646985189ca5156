#pragma once

#include "platform/Errors.h"

namespace brindle::platform {

/// The number of an `errno`. `ENOENT` is 2 here: whoever has the path asks `SystemPath::ErrorOf`,
/// which tells a missing name from a missing directory.
ErrorCode ErrorFromErrno(int inErrno) noexcept;

} // namespace brindle::platform
