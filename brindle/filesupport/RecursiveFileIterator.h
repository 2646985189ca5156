#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/DirectoryIterators.h>

#include <boost/function.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace brindle::filesupport {

/// Walks all files below a directory: first its own files, then those of its first subdirectory,
/// and so on.
///
/// The walk stays in the tree and ends. It does not enter a directory through a symbolic link, and
/// with `inResolveAliases`, which takes it into the targets of shortcuts, it enters none that is
/// already on its branch. A directory that cannot be read contributes nothing. Memory is that of
/// the listings on the present branch. One thread at a time.
class BRN_API RecursiveFileIterator {
public:
    /// The end of any walk.
    RecursiveFileIterator() = default;
    /// Begins a walk; `inStart` itself may be reached through a link. What is thrown on the way,
    /// such as for lack of memory, leaves the walk at its end. `inUnreadable`, unless it is empty,
    /// is called by the walk and its copies with each directory that cannot be read.
    RecursiveFileIterator(Dir const& inStart, bool inResolveAliases,
                          boost::function<void(Dir const&)> inUnreadable = {});

    /// The current file; an empty one at the end. It is made at each call.
    File operator*() const { return *mFile; }
    /// The directory that holds the current file; empty at the end.
    Dir const& CurrentDir() const noexcept { return mCurrentDir; }

    RecursiveFileIterator& operator++();
    RecursiveFileIterator operator++(int);

    /// All at their end are equal; otherwise the listings of the branch and the places in them
    /// count.
    BRN_API friend bool operator==(RecursiveFileIterator const& inLHS,
                                   RecursiveFileIterator const& inRHS);
    friend bool operator!=(RecursiveFileIterator const& inLHS, RecursiveFileIterator const& inRHS) {
        return !(inLHS == inRHS);
    }

private:
    /// A directory on the branch: which one it is on disk, and the subdirectories that are still to
    /// be entered.
    struct Level {
        std::uint64_t device;
        std::uint64_t number;
        std::shared_ptr<std::vector<UTF16String> const> subdirs; // unchanging, so copies share it
        std::size_t next;

        bool operator==(Level const& inRHS) const;
    };

    bool AtEnd() const noexcept { return mFile.AtEnd() && mBranch.empty(); }
    void Enter(Dir inDir);
    /// Goes on to the next directory that holds a file, unless a file is current.
    void SkipToFile();

    bool mResolveAliases = false;
    boost::function<void(Dir const&)> mUnreadable;
    Dir::FileIterator mFile;
    std::vector<Level> mBranch;
    Dir mCurrentDir;
};

} // namespace brindle::filesupport
