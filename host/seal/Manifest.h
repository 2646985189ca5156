#pragma once

#include "host/files/FileSum.h"

#include <brindle/proplist/PropList.h>

#include <cstdint>
#include <string>
#include <vector>

namespace brindle::host {

// A manifest records the files of a directory tree, so that later changes can be detected. It is a
// property list with these keys: "format", the version of this form; "root", the path of the tree;
// "files", a list in which the path of each file below the root ("/" between names) is the key of a
// list with "size" in bytes, "modified" in ISO 8601, UTC, to 100 nanoseconds, and "crc", the CRC-32
// as eight hexadecimal digits; and "others", a list in which the path of each entry that has no sum
// is the key of a word that says what it is. All paths are percent-encoded.

/// What a manifest records of an entry of the tree.
struct EntryState {
    enum Kind {
        kFile,
        kPipe,
        kSocket,
        kDevice,
        kOther,
        kDanglingLink,
        kUnreadable,         ///< a file that cannot be read
        kUnreadableDirectory ///< a directory that cannot be read
    };

    Kind kind = kFile;
    FileSum sum;                ///< of a file
    std::uint64_t modified = 0; ///< of a file, in 100-nanosecond ticks since the start of 1601 UTC
};

/// True if the kinds are the same, and so are the sums of two files.
inline bool IsSame(EntryState const& inLHS, EntryState const& inRHS) {
    return inLHS.kind == inRHS.kind && inLHS.sum.size == inRHS.sum.size &&
           inLHS.sum.crc == inRHS.sum.crc;
}

/// A manifest under construction.
class NewManifest {
public:
    /// `inRoot` is absolute, or relative to the directory in which the manifest will be saved.
    explicit NewManifest(std::string const& inRoot);

    void Add(std::string const& inPath, EntryState const& inState);

    /// Replaces the file, or leaves it as it was and throws `filesupport::file_exception`. Writes
    /// to standard output if the name is "-".
    void Save(std::string const& inName) const;

private:
    proplist::PropList mList;
    proplist::PropList& mFiles;
    proplist::PropList& mOthers;
};

struct SealedEntry {
    std::string path; ///< below the root: never empty or absolute, and without "." and ".."
    EntryState state; ///< without the time of modification
};

struct Manifest {
    std::string root; ///< absolute, or relative to the directory that the manifest is in
    std::vector<SealedEntry> entries; ///< sorted by path; no path occurs twice
};

/// Reads a manifest, from standard input if the name is "-". Throws `unreadable_error` unless the
/// file is a complete manifest of the form that `NewManifest` writes.
Manifest ReadManifest(std::string const& inName);

} // namespace brindle::host
