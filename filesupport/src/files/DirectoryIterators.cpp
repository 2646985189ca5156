#include <brindle/filesupport/DirectoryIterators.h>

#include "filesupport/src/files/DirectoryListing.h"

#include "platform/Volumes.h"

#include <utility>

namespace brindle::filesupport {

namespace {

std::vector<UTF16String> ListedPaths(bool inWantDirs, UTF16String const& inPath,
                                     bool inResolveAliases) {
    DirectoryListing listing = ListDirectory(inPath, inResolveAliases);
    if (!inWantDirs) {
        return std::move(listing.files);
    }
    std::vector<UTF16String> dirs;
    dirs.reserve(listing.subdirs.size());
    for (ListedDir& subdir : listing.subdirs) {
        dirs.push_back(std::move(subdir.path));
    }
    return dirs;
}

} // namespace

IteratorHelper::IteratorHelper(bool inWantDirs, UTF16String const& inPath, bool inResolveAliases)
    : IteratorHelper(inWantDirs, inResolveAliases,
                     ListedPaths(inWantDirs, inPath, inResolveAliases)) {}

IteratorHelper::IteratorHelper(bool inWantDirs, bool inResolveAliases, Paths inPaths)
    : mWantDirs(inWantDirs), mResolveAliases(inResolveAliases),
      mPaths(std::make_shared<Paths const>(std::move(inPaths))) {}

bool operator==(IteratorHelper const& inLHS, IteratorHelper const& inRHS) {
    if (inLHS.AtEnd() || inRHS.AtEnd()) {
        return inLHS.AtEnd() && inRHS.AtEnd();
    }
    return inLHS.mWantDirs == inRHS.mWantDirs && inLHS.mResolveAliases == inRHS.mResolveAliases &&
           inLHS.mIndex == inRHS.mIndex &&
           (inLHS.mPaths == inRHS.mPaths || *inLHS.mPaths == *inRHS.mPaths);
}

Dir::DirIterator& Dir::DirIterator::operator++() {
    if (mHelper) {
        mHelper->Step();
    }
    return *this;
}

Dir::DirIterator Dir::DirIterator::operator++(int) {
    DirIterator const before = *this;
    ++*this;
    return before;
}

Dir::FileIterator& Dir::FileIterator::operator++() {
    if (mHelper) {
        mHelper->Step();
    }
    return *this;
}

Dir::FileIterator Dir::FileIterator::operator++(int) {
    FileIterator const before = *this;
    ++*this;
    return before;
}

Dir::DirIterator Dir::BeginSubdirs(bool inResolveAliases) const {
    return DirIterator(IteratorHelper(true, mHelper.Path(), inResolveAliases));
}

Dir::DirIterator Dir::EndSubdirs() const {
    return DirIterator(IteratorHelper());
}

Dir::FileIterator Dir::BeginFiles(bool inResolveAliases) const {
    return FileIterator(IteratorHelper(false, mHelper.Path(), inResolveAliases));
}

Dir::FileIterator Dir::EndFiles() const {
    return FileIterator(IteratorHelper());
}

Dir::DirIterator Dir::BeginVolumes() {
    std::vector<UTF16String> roots;
    for (platform::Volume const& volume : platform::Volumes()) {
        roots.push_back({static_cast<std::uint16_t>(volume.letter), u':', u'\\'});
    }
    return DirIterator(IteratorHelper(true, false, std::move(roots)));
}

Dir::DirIterator Dir::EndVolumes() {
    return DirIterator(IteratorHelper());
}

} // namespace brindle::filesupport
