#pragma once

#include "host/files/FileSum.h"

#include <brindle/filesupport/File.h>
#include <brindle/proplist/PropList.h>

#include <cstdint>
#include <string>
#include <vector>

namespace brindle::host {

// A manifest tells the files of a directory tree, so that they can be found changed. It is a
// property list: under "format" the number of this form, under "root" the tree's path, under
// "files" a list for each file, whose key is the file's path below the root, "/" between names,
// with "size" in bytes, "modified" in ISO 8601, UTC, to the 100 nanoseconds, and "crc", the CRC-32
// as eight hexadecimal digits. Both kinds of paths are percent-encoded.

/// The manifest of a tree that is being sealed.
class NewManifest {
public:
    /// `inRoot` is absolute, or relative to the directory that the manifest will be in.
    explicit NewManifest(std::string const& inRoot);

    /// `inModified` is in 100-nanosecond ticks since the start of 1601 UTC.
    void Add(std::string const& inPath, FileSum const& inSum, std::uint64_t inModified);

    /// Replaces the file, or leaves it as it was and throws `filesupport::file_exception`.
    void Save(filesupport::File& ioFile) const;

private:
    proplist::PropList mList;
    proplist::PropList& mFiles;
};

struct SealedFile {
    std::string path; ///< below the root: never empty or absolute, and never with "." or ".."
    FileSum sum;
};

struct Manifest {
    std::string root; ///< absolute, or relative to the directory that the manifest is in
    std::vector<SealedFile> files; ///< by path, each path once
};

/// Throws `unreadable_error` unless the file is a manifest, complete and as `NewManifest` writes
/// it.
Manifest ReadManifest(filesupport::File const& inFile);

} // namespace brindle::host
