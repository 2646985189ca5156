#pragma once

#include <brindle/utility/TextTypes.h>

#include <vector>

namespace brindle::filesupport {

/// The full paths of what a directory holds, each list in the system's order.
struct DirectoryListing {
    std::vector<UTF16String> files;         ///< whatever is no directory
    std::vector<UTF16String> subdirs;       ///< directories, targets of shortcuts among them
    std::vector<UTF16String> linkedSubdirs; ///< symbolic links to directories
    bool isReadable = true;
};

/// Lists a directory in one pass; one that cannot be read is empty. With `inResolveAliases` a file
/// whose name ends in ".lnk" stands for what that shortcut leads to, or for nothing if it is
/// broken.
DirectoryListing ListDirectory(UTF16String const& inPath, bool inResolveAliases);

} // namespace brindle::filesupport
