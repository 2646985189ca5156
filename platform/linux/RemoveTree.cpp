#include "platform/Directories.h"

#include "platform/Paths.h"
#include "platform/linux/ErrnoTable.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/SystemPath.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <string>
#include <utility>
#include <vector>

namespace brindle::platform {

namespace {

FileDescriptor OpenDirectory(int inParent, char const* inName) noexcept {
    return FileDescriptor(Uninterrupted([&] {
        return ::openat(inParent, inName,
                        O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    }));
}

/// A directory on the branch that is being removed.
struct Level {
    FileIdentity identity;
    std::string name;                 // in the level above; not used of the first one
    std::vector<std::string> subdirs; // still to be removed, the next one last
};

/// Removes what is in a directory. Only the innermost directory of the branch is open, so that no
/// depth of nesting is too deep: the way back up is "..", which has to lead to the directory that
/// was left.
class TreeRemover {
public:
    explicit TreeRemover(FileDescriptor inRoot) : mCurrent(std::move(inRoot)) {}

    ErrorCode RemoveContent();
    /// Where a failure happened, below the first directory, each name with a "/" before it.
    std::string FailedPath() const;
    bool IsFailureOfDirectory() const noexcept { return mFailedFile.empty(); }

private:
    ErrorCode EnterCurrent(std::string inName);
    ErrorCode ReadCurrent(std::vector<std::string>& outFiles, std::vector<std::string>& outSubdirs);
    ErrorCode RemoveFile(std::string const& inName, std::vector<std::string>& ioSubdirs);
    ErrorCode GoDown(std::string inName);
    ErrorCode GoUp();

    FileDescriptor mCurrent;
    std::vector<Level> mBranch;
    std::string mFailedFile; // or subdirectory that could not be entered
    std::string mFailedSubdir;
};

ErrorCode TreeRemover::ReadCurrent(std::vector<std::string>& outFiles,
                                   std::vector<std::string>& outSubdirs) {
    FileDescriptor copy(::fcntl(mCurrent.Get(), F_DUPFD_CLOEXEC, 0));
    DIR* const stream = copy.IsOpen() ? ::fdopendir(copy.Get()) : nullptr;
    if (stream == nullptr) {
        return ErrorFromErrno(errno);
    }
    copy.Release();
    for (;;) {
        errno = 0;
        dirent const* const entry = ::readdir(stream);
        if (entry == nullptr) {
            break;
        }
        std::string name = entry->d_name;
        if (name == "." || name == "..") {
            continue;
        }
        struct stat status {};
        bool const isDirectory =
            entry->d_type == DT_DIR ||
            (entry->d_type == DT_UNKNOWN &&
             ::fstatat(mCurrent.Get(), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
             S_ISDIR(status.st_mode));
        (isDirectory ? outSubdirs : outFiles).push_back(std::move(name));
    }
    auto const error = ErrorFromErrno(errno);
    ::closedir(stream);
    return error;
}

ErrorCode TreeRemover::RemoveFile(std::string const& inName, std::vector<std::string>& ioSubdirs) {
    if (::unlinkat(mCurrent.Get(), inName.c_str(), 0) == 0 || errno == ENOENT) {
        return kError_None;
    }
    if (errno == EISDIR) { // somebody put a directory there since it was listed
        ioSubdirs.push_back(inName);
        return kError_None;
    }
    mFailedFile = inName;
    return ErrorFromErrno(errno);
}

/// Removes the files of the directory that is open now, and notes its subdirectories.
ErrorCode TreeRemover::EnterCurrent(std::string inName) {
    struct stat status {};
    if (::fstat(mCurrent.Get(), &status) != 0) {
        return ErrorFromErrno(errno);
    }
    mBranch.push_back({{status.st_dev, status.st_ino}, std::move(inName), {}});
    std::vector<std::string> files;
    auto error = ReadCurrent(files, mBranch.back().subdirs);
    for (auto file = files.begin(); file != files.end() && error == kError_None; ++file) {
        error = RemoveFile(*file, mBranch.back().subdirs);
    }
    return error;
}

ErrorCode TreeRemover::GoDown(std::string inName) {
    auto directory = OpenDirectory(mCurrent.Get(), inName.c_str());
    if (directory.IsOpen()) {
        mCurrent = std::move(directory);
        return EnterCurrent(std::move(inName));
    }
    auto const failure = errno;
    if (failure == ENOENT) {
        return kError_None;
    }
    // A link, or something else, that somebody put there since it was listed.
    bool const isExchanged = failure == ELOOP || failure == ENOTDIR;
    // A directory that may not be read can be removed all the same if it is empty.
    if (::unlinkat(mCurrent.Get(), inName.c_str(), isExchanged ? 0 : AT_REMOVEDIR) == 0) {
        return kError_None;
    }
    mFailedSubdir = std::move(inName);
    return ErrorFromErrno(isExchanged ? errno : failure);
}

ErrorCode TreeRemover::GoUp() {
    auto const& above = mBranch[mBranch.size() - 2].identity;
    auto parent = OpenDirectory(mCurrent.Get(), "..");
    struct stat status {};
    if (!parent.IsOpen() || ::fstat(parent.Get(), &status) != 0) {
        return ErrorFromErrno(errno);
    }
    if (!(above == FileIdentity{status.st_dev, status.st_ino})) {
        return kError_PathNotFound;
    }
    auto const& name = mBranch.back().name;
    if (::unlinkat(parent.Get(), name.c_str(), AT_REMOVEDIR) != 0 && errno != ENOENT) {
        return errno == EEXIST ? kError_DirectoryNotEmpty : ErrorFromErrno(errno);
    }
    mCurrent = std::move(parent);
    mBranch.pop_back();
    return kError_None;
}

ErrorCode TreeRemover::RemoveContent() {
    auto error = EnterCurrent({});
    while (error == kError_None && (mBranch.size() > 1 || !mBranch.back().subdirs.empty())) {
        auto& subdirs = mBranch.back().subdirs;
        if (subdirs.empty()) {
            error = GoUp();
        } else {
            auto name = std::move(subdirs.back());
            subdirs.pop_back();
            error = GoDown(std::move(name));
        }
    }
    return error;
}

std::string TreeRemover::FailedPath() const {
    std::string path;
    for (std::size_t level = 1; level < mBranch.size(); ++level) {
        path += '/' + mBranch[level].name;
    }
    auto const& last = mFailedFile.empty() ? mFailedSubdir : mFailedFile;
    return last.empty() ? path : path + '/' + last;
}

} // namespace

TreeRemoval RemoveTree(UTF16String const& inPath) {
    SystemPath path(inPath);
    path.DropTrailingSeparators();
    if (path.Error() != kError_None) {
        return {path.Error(), inPath, true};
    }
    auto root = OpenDirectory(path.Directory(), path.Tail());
    bool const isForbidden = !root.IsOpen() && errno == EACCES;
    if (root.IsOpen()) {
        TreeRemover remover(std::move(root));
        auto const error = remover.RemoveContent();
        if (error != kError_None) {
            auto const failedPath = remover.FailedPath();
            UTF16String below;
            NameFromNative(failedPath.data(), failedPath.size(), below);
            return {error, inPath + below, remover.IsFailureOfDirectory()};
        }
    }
    // Also removes a link, and an empty directory that may not be read.
    auto error = RemoveDirectory(inPath);
    if (error == kError_DirectoryNotEmpty && isForbidden) {
        error = kError_AccessDenied;
    }
    return {error, error == kError_None ? UTF16String() : inPath, error != kError_None};
}

} // namespace brindle::platform
