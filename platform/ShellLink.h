#pragma once

#include <brindle/utility/TextTypes.h>

#include "platform/Errors.h"

namespace brindle::platform {

struct ShellLinkTarget {
    UTF16String path;
    bool isDirectory = false;
};

/// Reads a shortcut, a desktop entry of type Link with a "file:" URL (or a path) of this machine.
/// Errors: those of opening the file; 13 not such an entry, or more than 64 KiB; 2, 3 the target
/// does not exist.
Result<ShellLinkTarget> ReadShellLink(UTF16String const& inLinkPath);

/// Writes such a shortcut, replacing an old one in one step. The target need not exist. Errors:
/// those of `ReplaceContent`; 3 or 123 a target that cannot be a path.
ErrorCode WriteShellLink(UTF16String const& inTarget, UTF16String const& inLinkPath,
                         UTF16String const& inDescription);

} // namespace brindle::platform
