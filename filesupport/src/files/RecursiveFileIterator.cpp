#include <brindle/filesupport/RecursiveFileIterator.h>

#include "filesupport/src/files/DirectoryListing.h"
#include "filesupport/src/files/TempNames.h"

#include <algorithm>
#include <utility>

namespace brindle::filesupport {

namespace {

void Tell(boost::function<void(Dir const&)> const& inWhom, Dir const& inDir) {
    if (inWhom) {
        inWhom(inDir);
    }
}

WalkOptions OptionsOf(bool inResolveAliases, boost::function<void(Dir const&)> inUnreadable) {
    WalkOptions options;
    options.resolveAliases = inResolveAliases;
    options.onUnreadableDir = std::move(inUnreadable);
    return options;
}

} // namespace

RecursiveFileIterator::RecursiveFileIterator(Dir const& inStart, bool inResolveAliases,
                                             boost::function<void(Dir const&)> inUnreadable)
    : RecursiveFileIterator(inStart, OptionsOf(inResolveAliases, std::move(inUnreadable))) {}

RecursiveFileIterator::RecursiveFileIterator(Dir const& inStart, WalkOptions inOptions) {
    try {
        mOptions = std::make_shared<WalkOptions const>(std::move(inOptions));
        Enter(inStart, false);
        SkipToFile();
    } catch (...) {
        *this = RecursiveFileIterator();
    }
}

RecursiveFileIterator& RecursiveFileIterator::operator++() {
    ++mFile;
    SkipToFile();
    return *this;
}

RecursiveFileIterator RecursiveFileIterator::operator++(int) {
    RecursiveFileIterator const before = *this;
    ++*this;
    return before;
}

bool operator==(RecursiveFileIterator const& inLHS, RecursiveFileIterator const& inRHS) {
    if (inLHS.AtEnd() || inRHS.AtEnd()) {
        return inLHS.AtEnd() && inRHS.AtEnd();
    }
    return inLHS.ResolvesAliases() == inRHS.ResolvesAliases() && inLHS.mFile == inRHS.mFile &&
           inLHS.mBranch == inRHS.mBranch;
}

bool RecursiveFileIterator::Level::operator==(Level const& inRHS) const {
    return next == inRHS.next &&
           (listing == inRHS.listing || listing->subdirs == inRHS.listing->subdirs);
}

void RecursiveFileIterator::Enter(Dir inDir, bool inIsOwn) {
    auto const* const parent = inIsOwn ? &mBranch.back().listing->identity : nullptr;
    auto listing = std::make_shared<DirectoryListing>(
        ListDirectory(inDir.Helper().Path(), mOptions->resolveAliases, parent));
    if (mOptions->leaveOutSaves) {
        RemoveSaves(listing->files);
    }
    bool const isRead = listing->error == platform::kError_None;
    if (!isRead) {
        Tell(mOptions->onUnreadableDir, inDir);
    } else if (listing->files.empty() && listing->subdirs.empty()) {
        Tell(mOptions->onEmptyDir, inDir);
    }
    // Links are not entered, so only a shortcut can lead back to a directory of the branch.
    auto const isSame = [&listing](Level const& inOuter) {
        return inOuter.listing->identity == listing->identity;
    };
    if (!inIsOwn && std::any_of(mBranch.begin(), mBranch.end(), isSame)) {
        return;
    }
    Dir::FileIterator files(
        IteratorHelper(false, mOptions->resolveAliases, std::move(listing->files)));
    // What may throw is done: from here on the walk is in the new directory as a whole.
    mBranch.push_back({std::move(listing), 0});
    mFile = std::move(files);
    mCurrentDir = std::move(inDir);
}

void RecursiveFileIterator::SkipToFile() {
    while (mFile.AtEnd() && !mBranch.empty()) {
        Level& innermost = mBranch.back();
        auto const& subdirs = innermost.listing->subdirs;
        if (innermost.next == subdirs.size()) {
            mBranch.pop_back();
            continue;
        }
        auto const& subdir = subdirs[innermost.next++];
        if (subdir.kind == Subdir::kLinked) {
            Tell(mOptions->onDirLink, Dir(subdir.path));
        } else {
            Enter(Dir(subdir.path), subdir.kind == Subdir::kOwn);
        }
    }
    if (AtEnd()) {
        mCurrentDir = Dir();
    }
}

} // namespace brindle::filesupport
