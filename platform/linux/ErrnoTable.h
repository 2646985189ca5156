#pragma once

#include "platform/Errors.h"

namespace brindle::platform {

/// The error of an `errno`. `ENOENT` is always 2 here; `SystemPath::ErrorOf`, which knows the path,
/// tells a missing name from a missing directory.
ErrorCode ErrorFromErrno(int inErrno) noexcept;

} // namespace brindle::platform
