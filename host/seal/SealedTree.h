#pragma once

#include "host/files/FilesBelow.h"
#include "host/seal/Manifest.h"

#include <brindle/filesupport/File.h>

#include <string>

namespace brindle::host {

/// A directory tree as a manifest records it: files by their paths below the root, "/" between
/// names, without the manifest itself.
class SealedTree {
public:
    /// Takes native paths. The manifest may be anywhere and need not exist yet, but its directory
    /// has to exist; "-" is a manifest in the current directory that is no file. Throws
    /// `unreadable_error` if the root is no directory.
    SealedTree(std::string const& inRoot, std::string const& inManifest);

    /// The path of the root, relative to the directory of the manifest where that is possible.
    std::string RootForManifest() const;

    /// All files and all unreadable directories, sorted by path; the path of the root is empty.
    FoundFiles Find(Diagnostics& ioDiagnostics) const;

    std::string NativePathOf(std::string const& inPath) const { return mPrefix + inPath; }

    /// What there is at a path; reads a file to its end. `outProblem` says why a file cannot be
    /// read. Throws `unsteady_error` for what changes meanwhile, and `missing_error`.
    EntryState StateOf(std::string const& inPath, std::string& outProblem) const;
    bool HasDirectoryAt(std::string const& inPath) const;

private:
    bool IsManifest(std::string const& inPath) const;

    filesupport::Dir const mRoot;
    std::string const mPrefix; // ends in "/"
    bool const mIsManifestAFile;
    std::string const mManifest;       // without links
    std::string const mManifestInTree; // its path below the root, if it is there
};

/// The absolute native path, without links, of the file that a path leads to. The file need not
/// exist.
std::string PathWithoutLinks(std::string const& inPath);

/// Joins a directory and a path, which may be absolute, and removes "." and ".." from the result.
std::string PathFrom(std::string const& inDirectory, std::string const& inPath);

/// The path of the manifest in a directory, if no other is given.
std::string DefaultManifestIn(std::string const& inDirectory);

/// The native path of the directory that holds a file, whose path has no links.
std::string DirectoryOf(std::string const& inPath);

} // namespace brindle::host
