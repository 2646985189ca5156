#include <brindle/filesupport/RecursiveFileIterator.h>

#include "filesupport/src/files/DirectoryListing.h"

#include "platform/Files.h"

#include <algorithm>
#include <utility>

namespace brindle::filesupport {

RecursiveFileIterator::RecursiveFileIterator(Dir const& inStart, bool inResolveAliases,
                                             boost::function<void(Dir const&)> inUnreadable)
    : mResolveAliases(inResolveAliases), mUnreadable(std::move(inUnreadable)) {
    try {
        Enter(inStart);
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
    return inLHS.mResolveAliases == inRHS.mResolveAliases && inLHS.mFile == inRHS.mFile &&
           inLHS.mBranch == inRHS.mBranch;
}

bool RecursiveFileIterator::Level::operator==(Level const& inRHS) const {
    return next == inRHS.next && (subdirs == inRHS.subdirs || *subdirs == *inRHS.subdirs);
}

void RecursiveFileIterator::Enter(Dir inDir) {
    Level level{0, 0, nullptr, 0};
    // Links are not entered, so only a shortcut can lead back to a directory of the branch.
    if (mResolveAliases) {
        auto const info = platform::Inspect(inDir.Helper().Path());
        level.device = info.value.identity.device;
        level.number = info.value.identity.number;
        auto const isSame = [&level](Level const& inOuter) {
            return inOuter.device == level.device && inOuter.number == level.number;
        };
        if (info && std::any_of(mBranch.begin(), mBranch.end(), isSame)) {
            return;
        }
    }
    DirectoryListing listing = ListDirectory(inDir.Helper().Path(), mResolveAliases);
    if (!listing.isReadable && mUnreadable) {
        mUnreadable(inDir);
    }
    level.subdirs = std::make_shared<std::vector<UTF16String> const>(std::move(listing.subdirs));
    Dir::FileIterator files(IteratorHelper(false, mResolveAliases, std::move(listing.files)));
    // Everything that may throw is done: from here on the walk is in the new directory as a whole.
    mBranch.push_back(std::move(level));
    mFile = std::move(files);
    mCurrentDir = std::move(inDir);
}

void RecursiveFileIterator::SkipToFile() {
    while (mFile.AtEnd() && !mBranch.empty()) {
        Level& innermost = mBranch.back();
        if (innermost.next == innermost.subdirs->size()) {
            mBranch.pop_back();
        } else {
            Enter(Dir((*innermost.subdirs)[innermost.next++]));
        }
    }
    if (AtEnd()) {
        mCurrentDir = Dir();
    }
}

} // namespace brindle::filesupport
