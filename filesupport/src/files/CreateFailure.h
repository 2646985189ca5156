#pragma once

#include "platform/Errors.h"

#include <brindle/filesupport/File.h>

namespace brindle::filesupport {

/// Throws the class of `create_exception` that tells why the file cannot be made.
[[noreturn]] void ThrowCreateFailure(File const& inFile, platform::ErrorCode inError);

} // namespace brindle::filesupport
