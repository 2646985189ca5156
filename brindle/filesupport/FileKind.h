#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/File.h>
#include <brindle/utility/SystemError.h>

namespace brindle::filesupport {

/// What is at a path.
///
/// Beside the standard library: as `std::filesystem::file_type`.
enum class FileKind {
    kMissing,   ///< nothing, a dangling link, or something that this process may not inspect
    kRegular,   ///< an ordinary file, the only kind that streams open
    kDirectory, ///< a directory
    kPipe,      ///< a FIFO
    kSocket,    ///< a socket
    kDevice,    ///< a character or block device
    kOther      ///< anything else
};

/// What is at the path of a file; a symbolic link counts as what it points to. Nothing is opened.
BRN_API FileKind KindOf(File const& inFile);
/// The same; `outCause` is why a file counts as missing, and otherwise `kNone`.
BRN_API FileKind KindOf(File const& inFile, utility::SystemError& outCause);

} // namespace brindle::filesupport
