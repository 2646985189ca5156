#pragma once

#include <brindle/utility/TextTypes.h>

#include <vector>

namespace brindle::filesupport {

/// The full paths of the entries of a directory, each list in the system's order.
struct DirectoryListing {
    std::vector<UTF16String> files;         ///< everything that is not a directory
    std::vector<UTF16String> subdirs;       ///< directories, including the targets of shortcuts
    std::vector<UTF16String> linkedSubdirs; ///< symbolic links to directories
    bool isReadable = true;
};

/// Lists a directory in one pass; one that cannot be read is empty. With `inResolveAliases` a file
/// whose name ends in
/// ".lnk" is replaced by the target of that shortcut, or left out if the shortcut is broken.
DirectoryListing ListDirectory(UTF16String const& inPath, bool inResolveAliases);

} // namespace brindle::filesupport
