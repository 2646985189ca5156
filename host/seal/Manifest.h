#pragma once

#include "host/files/FileSum.h"

#include <brindle/filesupport/File.h>
#include <brindle/proplist/PropList.h>

#include <cstdint>
#include <string>
#include <vector>

namespace brindle::host {

// A manifest records the files of a directory tree, so that later changes can be detected. It is a
// property list with these keys: "format", the version of this form; "root", the path of the tree;
// and "files", a list in which the path of each file below the root ("/" between names) is the key
// of a list with "size" in bytes, "modified" in ISO 8601, UTC, to 100 nanoseconds, and "crc", the
// CRC-32 as eight hexadecimal digits. All paths are percent-encoded.

/// A manifest under construction.
class NewManifest {
public:
    /// `inRoot` is absolute, or relative to the directory in which the manifest will be saved.
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
    std::string path; ///< below the root: never empty or absolute, and without "." and ".."
    FileSum sum;
};

struct Manifest {
    std::string root; ///< absolute, or relative to the directory that the manifest is in
    std::vector<SealedFile> files; ///< sorted by path; no path occurs twice
};

/// Throws `unreadable_error` unless the file is a complete manifest of the form that `NewManifest`
/// writes.
Manifest ReadManifest(filesupport::File const& inFile);

} // namespace brindle::host
