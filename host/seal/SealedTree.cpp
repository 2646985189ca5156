#include "host/seal/SealedTree.h"

#include "host/files/FileErrors.h"
#include "host/files/Input.h"

#include <brindle/filesupport/NativePath.h>

#include <algorithm>
#include <filesystem>

namespace brindle::host {

namespace fs = std::filesystem;
using namespace filesupport;

namespace {

constexpr int kMostLinks = 40; // as many as the system follows

EntryState::Kind KindOfIrregular(FileKind inKind) {
    switch (inKind) {
    case FileKind::kPipe:
        return EntryState::kPipe;
    case FileKind::kSocket:
        return EntryState::kSocket;
    case FileKind::kDevice:
        return EntryState::kDevice;
    case FileKind::kDirectory: // the walk found a file
        throw unsteady_error("has become a directory");
    default:
        return EntryState::kOther;
    }
}

std::string WithSlash(std::string const& inPath) {
    return inPath.empty() || inPath.back() != '/' ? inPath + '/' : inPath;
}

} // namespace

SealedTree::SealedTree(std::string const& inRoot, std::string const& inManifest)
    : mRoot(DirFromNative(inRoot)), mPrefix(WithSlash(NativePath(mRoot))),
      mIsManifestAFile(inManifest != kStandardStream), mManifest(PathWithoutLinks(inManifest)),
      mManifestInTree(fs::path(mManifest).lexically_relative(PathWithoutLinks(mPrefix))) {
    if (!mRoot.Exists()) {
        throw unreadable_error("no such directory");
    }
}

std::string SealedTree::RootForManifest() const {
    std::string const root = PathWithoutLinks(mPrefix);
    return fs::path(root).lexically_proximate(DirectoryOf(mManifest));
}

FoundFiles SealedTree::Find(Diagnostics& ioDiagnostics) const {
    FoundFiles found;
    FindFilesBelow(mRoot, found, ioDiagnostics);
    for (auto* const paths : {&found.files, &found.unreadableDirs}) {
        for (std::string& path : *paths) {
            path.erase(0, mPrefix.size());
        }
        std::sort(paths->begin(), paths->end());
    }
    auto const isManifest = [this](std::string const& inPath) { return IsManifest(inPath); };
    found.files.erase(std::remove_if(found.files.begin(), found.files.end(), isManifest),
                      found.files.end());
    return found;
}

EntryState SealedTree::StateOf(std::string const& inPath, std::string& outProblem) const {
    EntryState state;
    try {
        state.sum = SteadySumOf(FileFromNative(NativePathOf(inPath)), state.modified);
    } catch (missing_error const&) {
        std::error_code ignored;
        if (!fs::is_symlink(NativePathOf(inPath), ignored)) {
            throw;
        }
        state.kind = EntryState::kDanglingLink;
    } catch (irregular_error const& error) {
        state.kind = KindOfIrregular(error.Kind());
    } catch (unsteady_error const&) {
        throw;
    } catch (unreadable_error const& error) {
        state.kind = EntryState::kUnreadable;
        outProblem = error.what();
    }
    return state;
}

bool SealedTree::HasDirectoryAt(std::string const& inPath) const {
    return DirFromNative(NativePathOf(inPath)).Exists();
}

bool SealedTree::IsManifest(std::string const& inPath) const {
    if (!mIsManifestAFile) {
        return false;
    }
    if (inPath == mManifestInTree) {
        return true;
    }
    // The walk enters no linked directories, so only a file that is a link itself leads elsewhere.
    std::string const path = NativePathOf(inPath);
    std::error_code ignored;
    return fs::is_symlink(path, ignored) && PathWithoutLinks(path) == mManifest;
}

std::string PathWithoutLinks(std::string const& inPath) {
    std::error_code error;
    fs::path path = fs::absolute(inPath, error);
    // This also follows a link to a file that does not exist yet.
    for (int links = 0; links < kMostLinks && fs::is_symlink(path, error); ++links) {
        path = path.parent_path() / fs::read_symlink(path, error);
    }
    fs::path const canonical = fs::weakly_canonical(path, error);
    return error ? path : canonical;
}

std::string PathFrom(std::string const& inDirectory, std::string const& inPath) {
    return (fs::path(inDirectory) / inPath).lexically_normal();
}

std::string DefaultManifestIn(std::string const& inDirectory) {
    return WithSlash(inDirectory) + "brindle-seal.xml";
}

std::string DirectoryOf(std::string const& inPath) {
    return fs::path(inPath).parent_path();
}

} // namespace brindle::host
