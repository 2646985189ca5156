#pragma once

#include "platform/FileReplacement.h"

#include <brindle/filesupport/File.h>

#include <cstddef>

namespace brindle::filesupport {

/// Begins a new version of a file, as `OSafeSaveStream` does, and throws what its constructor
/// throws.
platform::FileReplacement BeginOrThrow(File const& inTarget, File const& inModel);

/// Throws `file_exception` if a step in the making of the new version failed.
void RequireWritten(File const& inTarget, platform::ErrorCode inError);

/// Puts the new version in place. Throws `rename_file`.
void CommitOrThrow(platform::FileReplacement& ioNewVersion, File const& inTarget);

} // namespace brindle::filesupport
