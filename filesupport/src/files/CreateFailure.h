#pragma once

#include "platform/Errors.h"

#include <brindle/filesupport/File.h>

namespace brindle::filesupport {

/// Throws the class derived from `create_exception` that stands for the reason why the file cannot
/// be created.
[[noreturn]] void ThrowCreateFailure(File const& inFile, platform::ErrorCode inError);

} // namespace brindle::filesupport
