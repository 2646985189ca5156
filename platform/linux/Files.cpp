#include "platform/Files.h"

#include "platform/linux/ErrnoTable.h"
#include "platform/linux/FileTimes.h"
#include "platform/linux/LockedFile.h"
#include "platform/linux/SystemPath.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace brindle::platform {

namespace {

FileKind KindOf(mode_t inMode) noexcept {
    switch (inMode & S_IFMT) {
    case S_IFREG:
        return FileKind::kFile;
    case S_IFDIR:
        return FileKind::kDirectory;
    case S_IFIFO:
        return FileKind::kPipe;
    case S_IFSOCK:
        return FileKind::kSocket;
    case S_IFCHR:
    case S_IFBLK:
        return FileKind::kDevice;
    default:
        return FileKind::kOther;
    }
}

FileInfo InfoOf(struct statx const& inStatus) noexcept {
    FileInfo info;
    info.kind = KindOf(inStatus.stx_mode);
    info.size = inStatus.stx_size;
    info.modified = TicksOf(inStatus.stx_mtime.tv_sec, inStatus.stx_mtime.tv_nsec);
    info.created = (inStatus.stx_mask & STATX_BTIME) != 0
                       ? TicksOf(inStatus.stx_btime.tv_sec, inStatus.stx_btime.tv_nsec)
                       : std::min(info.modified,
                                  TicksOf(inStatus.stx_ctime.tv_sec, inStatus.stx_ctime.tv_nsec));
    info.identity = {makedev(inStatus.stx_dev_major, inStatus.stx_dev_minor), inStatus.stx_ino};
    return info;
}

} // namespace

Result<FileInfo> Inspect(UTF16String const& inPath) {
    SystemPath const path(inPath);
    if (path.Error() != kError_None) {
        return {{}, path.Error()};
    }
    struct statx status {};
    if (::statx(path.Directory(), path.Tail(), AT_STATX_SYNC_AS_STAT,
                STATX_BASIC_STATS | STATX_BTIME, &status) != 0) {
        return {{}, path.ErrorOf(errno)};
    }
    return {InfoOf(status), kError_None};
}

ErrorCode SetModified(UTF16String const& inPath, std::uint64_t inTicks) {
    SystemPath const path(inPath);
    if (path.Error() != kError_None) {
        return path.Error();
    }
    timespec const times[2] = {{0, UTIME_OMIT}, TimeOf(inTicks)};
    return ::utimensat(path.Directory(), path.Tail(), times, 0) == 0 ? kError_None
                                                                     : path.ErrorOf(errno);
}

bool IsNameTaken(UTF16String const& inPath) {
    SystemPath const path(inPath);
    struct stat status {};
    return path.Error() == kError_None &&
           ::fstatat(path.Directory(), path.Tail(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

bool IsSymbolicLink(UTF16String const& inPath) {
    SystemPath path(inPath);
    path.DropTrailingSeparators();
    struct stat status {};
    return path.Error() == kError_None &&
           ::fstatat(path.Directory(), path.Tail(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISLNK(status.st_mode);
}

bool IsExecutable(UTF16String const& inPath) {
    SystemPath const path(inPath);
    struct stat status {};
    return path.Error() == kError_None &&
           ::fstatat(path.Directory(), path.Tail(), &status, 0) == 0 && S_ISREG(status.st_mode) &&
           ::faccessat(path.Directory(), path.Tail(), X_OK, AT_EACCESS) == 0;
}

OpenFile::OpenFile(OpenFile&& inOther) noexcept
    : mHandle(std::exchange(inOther.mHandle, kInvalidHandle)),
      mPosition(std::exchange(inOther.mPosition, 0)) {}

OpenFile& OpenFile::operator=(OpenFile&& inOther) noexcept {
    std::swap(mHandle, inOther.mHandle);
    std::swap(mPosition, inOther.mPosition);
    return *this;
}

OpenFile::~OpenFile() {
    if (IsOpen()) {
        ::close(static_cast<int>(mHandle));
    }
}

Result<std::size_t> OpenFile::Read(void* outBytes, std::size_t inCount) {
    auto* bytes = static_cast<char*>(outBytes);
    auto const wanted =
        static_cast<std::size_t>(std::min<std::uint64_t>(inCount, kMostPosition - mPosition));
    std::size_t total = 0;
    while (total < wanted) {
        auto const count = Uninterrupted([&] {
            return ::pread(static_cast<int>(mHandle), bytes + total, wanted - total,
                           static_cast<off_t>(mPosition));
        });
        if (count < 0) {
            return {0, ErrorFromErrno(errno)};
        }
        if (count == 0) {
            break;
        }
        total += static_cast<std::size_t>(count);
        mPosition += static_cast<std::uint64_t>(count);
    }
    return {total, kError_None};
}

ErrorCode OpenFile::Write(void const* inBytes, std::size_t inCount) {
    std::size_t written = 0;
    auto const error = WriteFully(static_cast<int>(mHandle), inBytes, inCount, mPosition, written);
    mPosition += written;
    return error;
}

ErrorCode OpenFile::SetPosition(std::uint64_t inPosition) {
    if (inPosition > kMostPosition) {
        return kError_InvalidParameter;
    }
    mPosition = inPosition;
    return kError_None;
}

Result<FileInfo> OpenFile::Inspect() const {
    struct statx status {};
    if (::statx(static_cast<int>(mHandle), "", AT_EMPTY_PATH | AT_STATX_SYNC_AS_STAT,
                STATX_BASIC_STATS | STATX_BTIME, &status) != 0) {
        return {{}, ErrorFromErrno(errno)};
    }
    return {InfoOf(status), kError_None};
}

Result<std::uint64_t> OpenFile::Size() const {
    return SizeOf(static_cast<int>(mHandle));
}

Result<OpenFile> OpenForReading(UTF16String const& inPath, Sharing inSharing) {
    auto const lock = inSharing == Sharing::kReaders ? FileLock::kReader : FileLock::kNone;
    auto file = OpenLocked(SystemPath(inPath), O_RDONLY, lock);
    return {OpenFile(file.value.Release()), file.error};
}

Result<OpenFile> OpenForWriting(UTF16String const& inPath) {
    auto file = OpenLocked(SystemPath(inPath), O_WRONLY, FileLock::kWriter);
    return {OpenFile(file.value.Release()), file.error};
}

Result<OpenFile> CreateNewFile(UTF16String const& inPath, Readers inReaders) {
    auto file = OpenLocked(SystemPath(inPath), O_WRONLY | O_CREAT | O_EXCL, FileLock::kWriter,
                           inReaders == Readers::kOwner ? kMode_OwnerOnly : kMode_Anybody);
    return {OpenFile(file.value.Release()), file.error};
}

ErrorCode CreateEmptyFile(UTF16String const& inPath) {
    // The file is emptied under the lock, so that nobody who has it open loses its content.
    auto const file = OpenLocked(SystemPath(inPath), O_WRONLY | O_CREAT, FileLock::kWriter);
    if (!file) {
        return file.error;
    }
    if (Uninterrupted([&] { return ::ftruncate(file.value.Get(), 0); }) != 0) {
        return ErrorFromErrno(errno);
    }
    return kError_None;
}

ErrorCode DeleteFile(UTF16String const& inPath) {
    SystemPath const path(inPath);
    if (path.Error() != kError_None) {
        return path.Error();
    }
    return ::unlinkat(path.Directory(), path.Tail(), 0) == 0 ? kError_None : path.ErrorOf(errno);
}

ErrorCode Move(UTF16String const& inFrom, UTF16String const& inTo) {
    SystemPath const from(inFrom);
    SystemPath const to(inTo);
    if (from.Error() != kError_None) {
        return from.Error();
    }
    if (to.Error() != kError_None) {
        return to.Error();
    }

    struct stat status {};
    auto const exists = [&status](SystemPath const& inWhich) {
        return ::fstatat(inWhich.Directory(), inWhich.Tail(), &status, AT_SYMLINK_NOFOLLOW) == 0;
    };
    auto result =
        ::renameat2(from.Directory(), from.Tail(), to.Directory(), to.Tail(), RENAME_NOREPLACE);
    if (result != 0 && (errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP)) {
        // The file system has no renaming that never replaces; making a link never does either.
        result = ::linkat(from.Directory(), from.Tail(), to.Directory(), to.Tail(), 0);
        if (result == 0) {
            ::unlinkat(from.Directory(), from.Tail(), 0);
        } else if (errno == EPERM || errno == EOPNOTSUPP) {
            // A directory, or a file system without links: a look must do, and whatever takes the
            // name between the two calls is replaced.
            if (exists(to)) {
                return kError_AlreadyExists;
            }
            result = ::renameat(from.Directory(), from.Tail(), to.Directory(), to.Tail());
        }
    }
    if (result == 0) {
        return kError_None;
    }
    auto const failure = errno;
    return failure == ENOENT && exists(from) ? to.ErrorOf(failure) : from.ErrorOf(failure);
}

} // namespace brindle::platform
