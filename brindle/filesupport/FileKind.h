#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/File.h>

namespace brindle::filesupport {

enum class FileKind {
    kMissing,   ///< nothing, a link that leads nowhere, or nothing that may be looked at
    kRegular,   ///< a file of bytes: the one kind that streams open
    kDirectory, ///< a directory
    kPipe,      ///< a FIFO
    kSocket,    ///< a socket
    kDevice,    ///< a character or block device
    kOther      ///< anything else
};

/// What stands at the path of a file; a symbolic link counts as what it leads to. Nothing is
/// opened.
BRN_API FileKind KindOf(File const& inFile);

} // namespace brindle::filesupport
