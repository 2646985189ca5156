#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/DirectoryIterators.h>
#include <brindle/utility/BoostFunction.h>

#include <cstddef>
#include <memory>
#include <vector>

namespace brindle::filesupport {

struct DirectoryListing;

/// What a walk follows, leaves out and tells of besides files.
struct WalkOptions {
    /// Lists a shortcut (".lnk") as its target, which the walk enters if it is a directory.
    bool resolveAliases = false;
    /// Leaves out the files of saves that are under way, or that were killed. A directory that
    /// holds nothing else counts as empty.
    bool leaveOutSaves = false;
    /// Called, unless they are empty, by the walk and its copies: with each directory that cannot
    /// be read, with each link to a directory, and with each directory that has no entries, also
    /// the one where the walk starts.
    boost::function<void(Dir const&)> onUnreadableDir;
    boost::function<void(Dir const&)> onDirLink;
    boost::function<void(Dir const&)> onEmptyDir;
};

/// Walks all files below a directory: first its own files, then those of its first subdirectory,
/// and so on:
///
///     for (RecursiveFileIterator file(dir, false), end; file != end; ++file) {
///         total += (*file).Size(kFileSize_Data);
///     }
///
/// The walk stays in the tree and ends. It does not enter a directory through a symbolic link. With
/// `inResolveAliases` it enters the targets of shortcuts, but never a directory that is already on
/// its branch. A directory that cannot be read contributes nothing. The memory needed is that of
/// the listings on the current branch. One thread at a time.
///
/// Beside the standard library: an input iterator, as a
/// `std::filesystem::recursive_directory_iterator` that visits files alone, and goes on where a
/// directory cannot be read; but copies walk on by themselves. `FilesBelow`
/// (brindle/filesupport/Listings.h) makes a range.
class BRN_API RecursiveFileIterator {
public:
    ///@{
    /// What `std::iterator_traits` asks for.
    using iterator_category = std::input_iterator_tag;
    using value_type = File;
    using difference_type = std::ptrdiff_t;
    using pointer = impl::Pointed<File>;
    using reference = File;
    ///@}

    /// The end of any walk.
    RecursiveFileIterator() = default;
    /// Begins a walk; `inStart` itself may be a link. An exception during construction, such as for
    /// lack of memory, is dropped and leaves the walk at its end. `inUnreadable`, unless it is
    /// empty, is called by the walk and its copies with each directory that cannot be read.
    RecursiveFileIterator(Dir const& inStart, bool inResolveAliases,
                          boost::function<void(Dir const&)> inUnreadable = {});

    /// The same, without resolving shortcuts.
    explicit RecursiveFileIterator(Dir const& inStart) : RecursiveFileIterator(inStart, false) {}

    /// The same with options: `RecursiveFileIterator file(dir, options)`.
    RecursiveFileIterator(Dir const& inStart, WalkOptions inOptions);

    /// The current file, a new object at each call; an empty one at the end.
    File operator*() const { return *mFile; }
    /// The same, for a member of it; the object lives until the end of the expression.
    pointer operator->() const { return pointer(**this); }
    /// The directory that holds the current file; empty at the end.
    Dir const& CurrentDir() const noexcept { return mCurrentDir; }

    /// Advances to the next file of the walk; at the end it stays there.
    RecursiveFileIterator& operator++();
    RecursiveFileIterator operator++(int);

    /// Two at their end are equal; otherwise the listings of the branch and the positions in them
    /// are compared.
    BRN_API friend bool operator==(RecursiveFileIterator const& inLHS,
                                   RecursiveFileIterator const& inRHS);
    friend bool operator!=(RecursiveFileIterator const& inLHS, RecursiveFileIterator const& inRHS) {
        return !(inLHS == inRHS);
    }

private:
    /// A directory on the branch.
    struct Level {
        std::shared_ptr<DirectoryListing const>
            listing;      // never changed, so that copies can share it
        std::size_t next; // the first subdirectory that was not entered yet

        bool operator==(Level const& inRHS) const;
    };

    bool AtEnd() const noexcept { return mFile.AtEnd() && mBranch.empty(); }
    /// Lists a directory, which has to be a subdirectory of the innermost one of the branch if
    /// `inIsOwn`.
    void Enter(Dir inDir, bool inIsOwn);
    /// Advances to the next directory with a file, unless a file is current.
    void SkipToFile();

    bool ResolvesAliases() const noexcept { return mOptions && mOptions->resolveAliases; }

    std::shared_ptr<WalkOptions const> mOptions; // null at the end of any walk
    Dir::FileIterator mFile;
    std::vector<Level> mBranch;
    Dir mCurrentDir;
};

} // namespace brindle::filesupport
