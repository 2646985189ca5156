#pragma once

#include <brindle/utility/TextTypes.h>

#include "platform/Errors.h"

#include <cstdint>

namespace brindle::platform {

struct DirectoryEntry {
    UTF16String name;
    bool isDirectory = false; ///< a directory, or a link to one
    bool isLink = false;      ///< a symbolic link
    bool isHidden = false;    ///< a name that begins with a dot
    bool isSystem = false;    ///< neither a file nor a directory: a FIFO, a socket, a device
};

/// One pass over the entries of a directory, without "." and "..", in the system's order.
/// A link counts as what it points to, and as a file if it points nowhere. One thread at a time.
class DirectoryScan {
public:
    /// A directory that cannot be read has no entries.
    explicit DirectoryScan(UTF16String const& inPath);
    DirectoryScan(DirectoryScan const&) = delete;
    DirectoryScan& operator=(DirectoryScan const&) = delete;
    ~DirectoryScan();

    /// Why the directory cannot be read, or not to its end, or 0. Errors: 2, 3, 5, 267, 1117, 1921.
    ErrorCode Error() const noexcept { return mError; }

    /// Fills `outEntry`, whose text keeps its storage from call to call; false at the end.
    bool Next(DirectoryEntry& outEntry);

private:
    void* mStream = nullptr;
    ErrorCode mError = kError_None;
};

/// Makes one level of directory. Errors: 3 the parent is missing, 5, 183 the name is taken, 112.
ErrorCode CreateDirectory(UTF16String const& inPath);

/// Removes an empty directory, or a link to a directory and not what it points to.
/// Errors: 2, 3, 5, 145 not empty, 267 no directory.
ErrorCode RemoveDirectory(UTF16String const& inPath);

} // namespace brindle::platform
