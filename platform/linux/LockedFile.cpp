#include "platform/linux/LockedFile.h"

#include "platform/linux/ErrnoTable.h"

#include <algorithm>

namespace brindle::platform {

bool IsSameFile(struct stat const& inLHS, struct stat const& inRHS) noexcept {
    return inLHS.st_dev == inRHS.st_dev && inLHS.st_ino == inRHS.st_ino;
}

Result<FileDescriptor> OpenLocked(SystemPath const& inPath, int inFlags, FileLock inLock,
                                  mode_t inMode) {
    // Some file systems never report the same number for a file twice, so that every file seems
    // replaced.
    constexpr int kMostAttempts = 64;
    if (inPath.Error() != kError_None) {
        return {{}, inPath.Error()};
    }
    for (int attempt = 1;; ++attempt) {
        struct stat named {};
        if (::fstatat(inPath.Directory(), inPath.Tail(), &named, 0) == 0) {
            if (!S_ISREG(named.st_mode)) {
                return {{}, kError_AccessDenied};
            }
        } else if (errno != ENOENT || (inFlags & O_CREAT) == 0) {
            return {{}, inPath.ErrorOf(errno)};
        }

        // Without blocking, in case a FIFO takes the file's place at this moment.
        FileDescriptor file(Uninterrupted([&] {
            return ::openat(inPath.Directory(), inPath.Tail(),
                            inFlags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, inMode);
        }));
        if (!file.IsOpen()) {
            return {{}, inPath.ErrorOf(errno)};
        }
        struct stat opened {};
        if (::fstat(file.Get(), &opened) != 0) {
            return {{}, ErrorFromErrno(errno)};
        }
        if (!S_ISREG(opened.st_mode)) {
            return {{}, kError_AccessDenied};
        }
        if (auto const refusal = TakeLock(file.Get(), inLock); refusal != kError_None) {
            return {{}, refusal};
        }

        bool const isReader = (inFlags & O_ACCMODE) == O_RDONLY;
        bool const isCurrent = isReader || attempt == kMostAttempts ||
                               (::fstatat(inPath.Directory(), inPath.Tail(), &named, 0) == 0 &&
                                IsSameFile(named, opened));
        if (isCurrent) {
            return {std::move(file), kError_None};
        }
    }
}

ErrorCode WriteFully(int inDescriptor, void const* inBytes, std::size_t inCount,
                     std::uint64_t inOffset, std::size_t& outWritten) {
    auto const* bytes = static_cast<char const*>(inBytes);
    outWritten = 0;
    auto const room = kMostPosition - std::min(inOffset, kMostPosition);
    auto const wanted = static_cast<std::size_t>(std::min<std::uint64_t>(inCount, room));
    while (outWritten < wanted) {
        auto const count = Uninterrupted([&] {
            return ::pwrite(inDescriptor, bytes + outWritten, wanted - outWritten,
                            static_cast<off_t>(inOffset + outWritten));
        });
        if (count < 0) {
            return ErrorFromErrno(errno);
        }
        if (count == 0) {
            return kError_DiskFull;
        }
        outWritten += static_cast<std::size_t>(count);
    }
    return wanted == inCount ? kError_None : kError_FileTooLarge;
}

Result<FileDescriptor> GuardOld(FilePlace const& inPlace) {
    auto old = OpenLocked(inPlace.Path(), O_WRONLY | O_NOFOLLOW, FileLock::kTurn);
    if (old.error == kError_FileNotFound) {
        return {};
    }
    return old;
}

Result<std::uint64_t> SizeOf(int inDescriptor) {
    struct stat status {};
    if (::fstat(inDescriptor, &status) != 0) {
        return {0, ErrorFromErrno(errno)};
    }
    return {static_cast<std::uint64_t>(status.st_size), kError_None};
}

} // namespace brindle::platform
