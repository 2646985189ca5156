#include "platform/Directories.h"

#include "platform/Paths.h"
#include "platform/linux/ErrnoTable.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/SystemPath.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cstring>

namespace brindle::platform {

namespace {

/// The error of a call that needs a directory.
ErrorCode DirectoryErrorOf(SystemPath const& inPath, int inErrno) {
    struct stat status {};
    // Either the last name or one on the way is not a directory.
    if (inErrno == ENOTDIR &&
        ::fstatat(inPath.Directory(), inPath.Tail(), &status, AT_SYMLINK_NOFOLLOW) == 0) {
        return kError_NotADirectory;
    }
    return inPath.ErrorOf(inErrno);
}

bool IsDotOrDotDot(char const* inName) noexcept {
    return inName[0] == '.' && (inName[1] == '\0' || (inName[1] == '.' && inName[2] == '\0'));
}

void TakeKind(DirectoryEntry& ioEntry, mode_t inMode) noexcept {
    ioEntry.isDirectory = S_ISDIR(inMode);
    ioEntry.isLink = S_ISLNK(inMode);
    ioEntry.isSystem = !S_ISREG(inMode) && !S_ISDIR(inMode) && !S_ISLNK(inMode);
}

} // namespace

DirectoryScan::DirectoryScan(UTF16String const& inPath) {
    Open(inPath, nullptr);
}

DirectoryScan::DirectoryScan(UTF16String const& inPath, FileIdentity const& inParent) {
    Open(inPath, &inParent);
}

void DirectoryScan::Open(UTF16String const& inPath, FileIdentity const* inParent) {
    SystemPath path(inPath);
    mError = path.Error();
    if (mError != kError_None) {
        return;
    }
    int flags = O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC;
    if (inParent != nullptr) {
        path.DropTrailingSeparators();
        flags |= O_NOFOLLOW;
    }
    FileDescriptor directory(
        Uninterrupted([&] { return ::openat(path.Directory(), path.Tail(), flags); }));
    if (!directory.IsOpen()) {
        mError = DirectoryErrorOf(path, errno);
        return;
    }
    struct stat status {};
    struct stat parent {};
    if (::fstat(directory.Get(), &status) != 0) {
        mError = ErrorFromErrno(errno);
        return;
    }
    mIdentity = {status.st_dev, status.st_ino};
    // The path may have been led elsewhere; the way up from an open directory cannot be.
    if (inParent != nullptr &&
        (::fstatat(directory.Get(), "..", &parent, AT_SYMLINK_NOFOLLOW) != 0 ||
         !(*inParent == FileIdentity{parent.st_dev, parent.st_ino}))) {
        mError = kError_PathNotFound;
        return;
    }
    mStream = ::fdopendir(directory.Get());
    if (mStream == nullptr) {
        mError = ErrorFromErrno(errno);
    } else {
        directory.Release();
    }
}

DirectoryScan::~DirectoryScan() {
    if (mStream != nullptr) {
        ::closedir(static_cast<DIR*>(mStream));
    }
}

bool DirectoryScan::Next(DirectoryEntry& outEntry) {
    if (mStream == nullptr) {
        return false;
    }
    auto* const stream = static_cast<DIR*>(mStream);
    dirent const* entry = nullptr;
    do {
        errno = 0;
        entry = ::readdir(stream);
        if (entry == nullptr) {
            mError = ErrorFromErrno(errno);
            return false;
        }
    } while (IsDotOrDotDot(entry->d_name));

    NameFromNative(entry->d_name, std::strlen(entry->d_name), outEntry.name);
    outEntry.isHidden = entry->d_name[0] == '.';
    struct stat status {};
    if (entry->d_type != DT_UNKNOWN) {
        TakeKind(outEntry, static_cast<mode_t>(DTTOIF(entry->d_type)));
    } else if (::fstatat(::dirfd(stream), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0) {
        TakeKind(outEntry, status.st_mode);
    } else {
        TakeKind(outEntry, S_IFREG);
    }
    if (outEntry.isLink && ::fstatat(::dirfd(stream), entry->d_name, &status, 0) == 0) {
        TakeKind(outEntry, status.st_mode);
        outEntry.isLink = true;
    }
    return true;
}

ErrorCode CreateDirectory(UTF16String const& inPath, Readers inReaders) {
    constexpr mode_t kAnybody = 0777;
    constexpr mode_t kOwner = 0700;
    SystemPath const path(inPath);
    if (path.Error() != kError_None) {
        return path.Error();
    }
    if (::mkdirat(path.Directory(), path.Tail(),
                  inReaders == Readers::kOwner ? kOwner : kAnybody) == 0) {
        return kError_None;
    }
    return errno == ENOENT ? kError_PathNotFound : ErrorFromErrno(errno);
}

ErrorCode RemoveDirectory(UTF16String const& inPath) {
    SystemPath path(inPath);
    if (path.Error() != kError_None) {
        return path.Error();
    }
    path.DropTrailingSeparators();
    if (::unlinkat(path.Directory(), path.Tail(), AT_REMOVEDIR) == 0) {
        return kError_None;
    }
    auto const failure = errno;
    if (failure == EEXIST) {
        return kError_DirectoryNotEmpty;
    }
    if (failure != ENOTDIR) {
        return path.ErrorOf(failure);
    }

    struct stat itself {};
    struct stat target {};
    bool const isLinkToDirectory =
        ::fstatat(path.Directory(), path.Tail(), &itself, AT_SYMLINK_NOFOLLOW) == 0 &&
        S_ISLNK(itself.st_mode) && ::fstatat(path.Directory(), path.Tail(), &target, 0) == 0 &&
        S_ISDIR(target.st_mode);
    if (!isLinkToDirectory) {
        return DirectoryErrorOf(path, failure);
    }
    return ::unlinkat(path.Directory(), path.Tail(), 0) == 0 ? kError_None : path.ErrorOf(errno);
}

} // namespace brindle::platform
