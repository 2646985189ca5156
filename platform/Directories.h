#pragma once

#include <brindle/utility/TextTypes.h>

#include "platform/Errors.h"
#include "platform/Files.h"

#include <cstdint>

namespace brindle::platform {

struct DirectoryEntry {
    UTF16String name;
    bool isDirectory = false; ///< a directory, or a link to one
    bool isLink = false;      ///< a symbolic link
    bool isHidden = false;    ///< a name that begins with a dot
    bool isSystem = false;    ///< neither a file nor a directory: a FIFO, a socket, a device
};

/// One pass over the entries of a directory, without "." and "..", in the system's order. A link
/// counts as what it points to, and as a file if it dangles. One thread at a time.
class DirectoryScan {
public:
    /// A directory that cannot be read has no entries.
    explicit DirectoryScan(UTF16String const& inPath);
    /// The same for a directory that has to be, at this moment and not through a link, a
    /// subdirectory of `inParent`: whatever others exchange on the path meanwhile, the scan stays
    /// in the tree. Errors 267, 1921, or 3 it is not.
    DirectoryScan(UTF16String const& inPath, FileIdentity const& inParent);
    DirectoryScan(DirectoryScan const&) = delete;
    DirectoryScan& operator=(DirectoryScan const&) = delete;
    ~DirectoryScan();

    /// Why the directory cannot be read, or not to its end, or 0. Errors: 2, 3, 5, 267, 1117, 1921.
    ErrorCode Error() const noexcept { return mError; }

    /// The directory that is read; of no meaning if it could not be opened.
    FileIdentity const& Identity() const noexcept { return mIdentity; }

    /// Fills `outEntry`, whose text keeps its storage from call to call; false at the end.
    bool Next(DirectoryEntry& outEntry);

private:
    void Open(UTF16String const& inPath, FileIdentity const* inParent);

    void* mStream = nullptr;
    ErrorCode mError = kError_None;
    FileIdentity mIdentity;
};

/// Creates one level of directory, which nobody but those readers may enter. Errors: 3 the parent
/// does not exist, 5, 183 the name is taken, 112.
ErrorCode CreateDirectory(UTF16String const& inPath, Readers inReaders = Readers::kAnybody);

/// Removes an empty directory, or a link to a directory and not what it points to. Errors: 2, 3, 5,
/// 145 not empty, 267 not a directory.
ErrorCode RemoveDirectory(UTF16String const& inPath);

/// What stopped the removal of a tree.
struct [[nodiscard]] TreeRemoval {
    ErrorCode error = kError_None;
    UTF16String path;         ///< what cannot be removed; empty without an error
    bool isDirectory = false; ///< whether that is a directory
};

/// Removes a directory with everything in it, at any depth. Works from open directories that are
/// entered without following links, so that nothing outside the tree is removed, whatever others
/// exchange in it meanwhile. Links are removed, never what they point to, also where the path
/// itself is one. The first failure ends it; what has gone already is none. Errors: those of
/// `DeleteFile` and `RemoveDirectory`; 3 a directory was moved away meanwhile.
TreeRemoval RemoveTree(UTF16String const& inPath);

} // namespace brindle::platform
