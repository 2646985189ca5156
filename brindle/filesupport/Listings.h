#pragma once

#include <brindle/filesupport/RecursiveFileIterator.h>

#include <utility>

namespace brindle::filesupport {

/// A listing as a range, for loops and algorithms:
///
///     for (File const& file : Files(dir)) { total += file.Size(); }
///     auto const listing = FilesBelow(dir);
///     auto const count = std::count_if(listing.begin(), listing.end(), IsMovie);
///
/// The snapshot is taken when the range is made, and shared by copies of it. Iterators do not refer
/// to the range, and may outlive it. An input range: each dereference makes a new object, and
/// `->` refers to one that lives until the end of the expression.
template <typename Iterator>
class Listing {
public:
    ///@{
    /// What the standard library asks of a range.
    using iterator = Iterator;
    using const_iterator = Iterator;
    using value_type = typename Iterator::value_type;
    ///@}

    /// From an iterator and the end of its walk.
    Listing(Iterator inBegin, Iterator inEnd)
        : mBegin(std::move(inBegin)), mEnd(std::move(inEnd)) {}

    /// The first element; past it, the end of the listing.
    Iterator begin() const { return mBegin; }
    Iterator end() const { return mEnd; }
    /// Whether there is no element.
    [[nodiscard]] bool empty() const { return mBegin == mEnd; }

private:
    Iterator mBegin;
    Iterator mEnd;
};

/// The files of a directory, as `Dir::BeginFiles` lists them.
[[nodiscard]] inline Listing<Dir::FileIterator> Files(Dir const& inDir,
                                                      bool inResolveAliases = false) {
    return {inDir.BeginFiles(inResolveAliases), inDir.EndFiles()};
}

/// The subdirectories, as `Dir::BeginSubdirs` lists them.
[[nodiscard]] inline Listing<Dir::DirIterator> Subdirs(Dir const& inDir,
                                                       bool inResolveAliases = false) {
    return {inDir.BeginSubdirs(inResolveAliases), inDir.EndSubdirs()};
}

/// The volumes of the machine, as `Dir::BeginVolumes` lists them.
[[nodiscard]] inline Listing<Dir::DirIterator> Volumes() {
    return {Dir::BeginVolumes(), Dir::EndVolumes()};
}

/// All files below a directory, in the order of a `RecursiveFileIterator`. Only the listings on the
/// current branch are snapshots.
[[nodiscard]] inline Listing<RecursiveFileIterator> FilesBelow(Dir const& inDir,
                                                               WalkOptions inOptions = {}) {
    return {RecursiveFileIterator(inDir, std::move(inOptions)), RecursiveFileIterator()};
}

} // namespace brindle::filesupport
