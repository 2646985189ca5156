#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/Dir.h>
#include <brindle/filesupport/File.h>
#include <brindle/utility/TextTypes.h>

#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace brindle::filesupport {

namespace impl {

/// What `->` of an iterator returns whose `*` makes a new object: it holds the object until the end
/// of the expression.
template <typename Value>
class Pointed {
public:
    explicit Pointed(Value inValue) : mValue(std::move(inValue)) {}
    Value const* operator->() const noexcept { return &mValue; }

private:
    Value mValue;
};

} // namespace impl

/// A position in a listing, which is a snapshot: later changes of the directory do not affect it.
/// Each copy has a position of its own. One thread at a time.
class BRN_API IteratorHelper {
public:
    /// True if there is no current entry.
    bool AtEnd() const noexcept { return !mPaths || mIndex >= mPaths->size(); }

    /// The full path of the current entry, empty at the end.
    UTF16String CurrentPath() const { return AtEnd() ? UTF16String() : (*mPaths)[mIndex]; }

    /// Advances to the next entry; at the end it stays there.
    void Step() noexcept { mIndex += AtEnd() ? 0u : 1u; }

    /// Two at their end are equal; otherwise both listings, what they were asked for and the
    /// positions are compared.
    BRN_API friend bool operator==(IteratorHelper const& inLHS, IteratorHelper const& inRHS);

protected:
    friend class Dir;
    friend class RecursiveFileIterator;
    using Paths = std::vector<UTF16String>; ///< full, in the system's order

    /// The end of any listing.
    IteratorHelper() = default;
    /// Scans the directory at `inPath`; one that cannot be read is empty.
    IteratorHelper(bool inWantDirs, UTF16String const& inPath, bool inResolveAliases);

private:
    IteratorHelper(bool inWantDirs, bool inResolveAliases, Paths inPaths);

    bool mWantDirs = false;
    bool mResolveAliases = false;
    std::shared_ptr<Paths const> mPaths; // never changed, so copies share it
    std::size_t mIndex = 0;
};

/// Walks the subdirectories of a directory, or the volumes of the machine, in the system's order.
/// An end iterator equals every iterator at its end; a default-constructed iterator equals only
/// another one.
///
/// Beside the standard library: an input iterator, as a `std::filesystem::directory_iterator`; but
/// the listing is taken as a whole, and a failure makes it empty. `Subdirs` and `Volumes`
/// (brindle/filesupport/Listings.h) make ranges.
class BRN_API Dir::DirIterator {
public:
    ///@{
    /// What `std::iterator_traits` asks for.
    using iterator_category = std::input_iterator_tag;
    using value_type = Dir;
    using difference_type = std::ptrdiff_t;
    using pointer = impl::Pointed<Dir>;
    using reference = Dir;
    ///@}

    DirIterator() = default;
    /// Begins at the position of the helper.
    explicit DirIterator(IteratorHelper inHelper) : mHelper(std::move(inHelper)) {}

    /// The current directory, a new object at each call; an empty one at the end.
    Dir operator*() const { return mHelper ? Dir(mHelper->CurrentPath()) : Dir(); }

    /// The same, for a member of it; the object lives until the end of the expression.
    pointer operator->() const { return pointer(**this); }

    /// Advances; at the end it stays there.
    DirIterator& operator++();
    DirIterator operator++(int);

    /// Compares listings and positions; two at their end are equal.
    friend bool operator==(DirIterator const& inLHS, DirIterator const& inRHS) {
        return inLHS.mHelper == inRHS.mHelper;
    }
    friend bool operator!=(DirIterator const& inLHS, DirIterator const& inRHS) {
        return !(inLHS == inRHS);
    }

private:
    std::optional<IteratorHelper> mHelper;
};

/// Walks the files of a directory, which include everything that is not a directory, in the
/// system's order. An end iterator equals every iterator at its end; a default-constructed iterator
/// equals only another one.
///
/// Beside the standard library: an input iterator, as a `std::filesystem::directory_iterator`; but
/// the listing is taken as a whole, and a failure makes it empty. `Files`
/// (brindle/filesupport/Listings.h) makes a range.
class BRN_API Dir::FileIterator {
public:
    ///@{
    /// What `std::iterator_traits` asks for.
    using iterator_category = std::input_iterator_tag;
    using value_type = File;
    using difference_type = std::ptrdiff_t;
    using pointer = impl::Pointed<File>;
    using reference = File;
    ///@}

    FileIterator() = default;
    /// Begins at the position of the helper.
    explicit FileIterator(IteratorHelper inHelper) : mHelper(std::move(inHelper)) {}

    /// The current file, a new object at each call; an empty one at the end.
    File operator*() const { return mHelper ? File(mHelper->CurrentPath()) : File(); }

    /// The same, for a member of it; the object lives until the end of the expression.
    pointer operator->() const { return pointer(**this); }

    /// Advances; at the end it stays there.
    FileIterator& operator++();
    FileIterator operator++(int);

    /// Compares listings and positions; two at their end are equal.
    friend bool operator==(FileIterator const& inLHS, FileIterator const& inRHS) {
        return inLHS.mHelper == inRHS.mHelper;
    }
    friend bool operator!=(FileIterator const& inLHS, FileIterator const& inRHS) {
        return !(inLHS == inRHS);
    }

private:
    friend class RecursiveFileIterator;
    bool AtEnd() const noexcept { return !mHelper || mHelper->AtEnd(); }

    std::optional<IteratorHelper> mHelper;
};

} // namespace brindle::filesupport
