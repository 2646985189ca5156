#pragma once

#include "platform/Files.h"

#include <brindle/utility/TextTypes.h>

#include <vector>

namespace brindle::filesupport {

/// How a listed directory is reached from the one that lists it.
enum class Subdir {
    kOwn,    ///< it is in there
    kLinked, ///< through a symbolic link
    kTarget  ///< through a shortcut
};

struct ListedDir {
    UTF16String path;
    Subdir kind;

    friend bool operator==(ListedDir const& inLHS, ListedDir const& inRHS) {
        return inLHS.path == inRHS.path && inLHS.kind == inRHS.kind;
    }
};

/// The full paths of the entries of a directory, each list in the system's order.
struct DirectoryListing {
    std::vector<UTF16String> files; ///< everything that is not a directory
    std::vector<ListedDir> subdirs;
    platform::FileIdentity identity;
    platform::ErrorCode error = platform::kError_None; ///< why it cannot be read, or not to its end
};

/// Lists a directory in one pass; one that cannot be read is empty. With `inResolveAliases` a file
/// whose name ends in
/// ".lnk" is replaced by the target of that shortcut, or left out if the shortcut is broken. Unless
/// it is null, the directory has to be a subdirectory of `inParent`, as `platform::DirectoryScan`
/// checks it.
DirectoryListing ListDirectory(UTF16String const& inPath, bool inResolveAliases,
                               platform::FileIdentity const* inParent = nullptr);

} // namespace brindle::filesupport
