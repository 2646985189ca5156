#pragma once

#include "host/files/FilesBelow.h"

#include <brindle/filesupport/File.h>

#include <string>

namespace brindle::host {

/// A directory tree as a manifest tells it: files by their paths below its root, "/" between names,
/// without the manifest itself.
class SealedTree {
public:
    /// Native paths. The manifest may be anywhere, and need not be there yet; its directory is.
    /// Throws `unreadable_error` if the root is no directory.
    SealedTree(std::string const& inRoot, std::string const& inManifest);

    /// The root, relative to the manifest's own directory unless it has no such path.
    std::string RootForManifest() const;

    /// All files and unreadable directories, sorted by path; the root's path is empty. The latter
    /// are reported.
    FoundFiles Find(Diagnostics& ioDiagnostics) const;

    std::string NativePathOf(std::string const& inPath) const { return mPrefix + inPath; }
    filesupport::File FileAt(std::string const& inPath) const;

private:
    bool IsManifest(std::string const& inPath) const;

    filesupport::Dir const mRoot;
    std::string const mPrefix;         // ends in "/"
    std::string const mManifest;       // without links
    std::string const mManifestInTree; // its path below the root, if it is there
};

/// The native path of what a path leads to, absolute and without links, also if it is not there
/// yet.
std::string PathWithoutLinks(std::string const& inPath);

/// A native path, without "." and "..", of what an absolute or relative path names from a
/// directory.
std::string PathFrom(std::string const& inDirectory, std::string const& inPath);

/// The native path of the directory that holds what is at a path without links.
std::string DirectoryOf(std::string const& inPath);

} // namespace brindle::host
