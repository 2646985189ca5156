#pragma once

#include <brindle/utility/TextTypes.h>

#include "platform/Errors.h"

namespace brindle::platform {

struct ShellLinkTarget {
    UTF16String path;
    bool isDirectory = false;
};

/// Reads a shortcut, a desktop entry of type Link with a "file:" URL (or a path) of this machine.
/// Errors: those of opening the file; 13 not such an entry, or over 64 KiB; 2, 3 the target is
/// gone.
Result<ShellLinkTarget> ReadShellLink(UTF16String const& inLinkPath);

/// Writes such a shortcut, replacing in one step what stands there. The target need not exist.
/// Errors as for `ReplaceContent`, and 3 or 123 for a target that cannot be a path.
ErrorCode WriteShellLink(UTF16String const& inTarget, UTF16String const& inLinkPath,
                         UTF16String const& inDescription);

} // namespace brindle::platform
