#include "platform/linux/NewFile.h"

#include "platform/linux/ErrnoTable.h"
#include "platform/linux/LockedFile.h"

#include <sys/random.h>

#include <array>
#include <atomic>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <utility>

namespace brindle::platform {

namespace {

constexpr char kPrefix[] = ".brindle-";
constexpr std::size_t kDigits = 16;

/// Names are tried until one is free, so that they need not be unpredictable but only differ from
/// call to call.
std::string HiddenName() {
    static std::atomic<std::uint64_t> S_calls{0};
    std::uint64_t number = 0;
    if (::getrandom(&number, sizeof number, GRND_NONBLOCK) != sizeof number) {
        timespec now{};
        ::clock_gettime(CLOCK_REALTIME, &now);
        number = static_cast<std::uint64_t>(now.tv_sec) << 32 ^
                 static_cast<std::uint64_t>(now.tv_nsec) << 20 ^
                 static_cast<std::uint64_t>(::getpid());
    }
    number += S_calls.fetch_add(1, std::memory_order_relaxed);
    std::array<char, kDigits + 1> digits{};
    std::snprintf(digits.data(), digits.size(), "%016" PRIx64, number);
    return std::string(kPrefix) + digits.data();
}

/// Calls `inTry` with hidden names until it succeeds or fails for another reason than a name that
/// is taken. Gives the name, or an empty one.
template <typename Try>
std::string WithFreeName(Try inTry) {
    constexpr int kMostAttempts = 1000;
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
        auto name = HiddenName();
        if (inTry(name.c_str())) {
            return name;
        }
        if (errno != EEXIST) {
            break;
        }
    }
    return {};
}

/// A name of the system's own for an open file, through which a file without a name can be linked.
std::array<char, 32> DescriptorPath(int inDescriptor) {
    std::array<char, 32> path{};
    std::snprintf(path.data(), path.size(), "/proc/self/fd/%d", inDescriptor);
    return path;
}

} // namespace

NewFile::~NewFile() {
    if (!mName.empty()) {
        ::unlinkat(mPlace.directory.Get(), mName.c_str(), 0);
    }
}

ErrorCode NewFile::Create(mode_t inMode) {
    if (CreateNameless(inMode)) {
        return kError_None;
    }
    mName = WithFreeName([&](char const* inName) {
        mFile = FileDescriptor(Uninterrupted([&] {
            return ::openat(mPlace.directory.Get(), inName,
                            O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, inMode);
        }));
        return mFile.IsOpen();
    });
    if (!mFile.IsOpen()) {
        return ErrorFromErrno(errno);
    }
    MarkAsSaving(mFile.Get());
    return kError_None;
}

bool NewFile::CreateNameless(mode_t inMode) {
    FileDescriptor file(Uninterrupted([&] {
        return ::openat(mPlace.directory.Get(), ".", O_WRONLY | O_TMPFILE | O_CLOEXEC, inMode);
    }));
    // Without /proc such a file could not be given a name in the end.
    struct stat status {};
    if (!file.IsOpen() || ::stat(DescriptorPath(file.Get()).data(), &status) != 0) {
        return false;
    }
    MarkAsSaving(file.Get()); // for the moments in which it has a hidden name
    mFile = std::move(file);
    return true;
}

ErrorCode NewFile::GiveName() {
    auto const source = DescriptorPath(mFile.Get());
    mName = WithFreeName([&](char const* inName) {
        return ::linkat(AT_FDCWD, source.data(), mPlace.directory.Get(), inName,
                        AT_SYMLINK_FOLLOW) == 0;
    });
    return mName.empty() ? ErrorFromErrno(errno) : kError_None;
}

ErrorCode NewFile::PutInPlace() {
    if (mName.empty()) {
        // A link replaces nothing, so over an old version it takes a name first.
        if (::linkat(AT_FDCWD, DescriptorPath(mFile.Get()).data(), mPlace.directory.Get(),
                     mPlace.name.c_str(), AT_SYMLINK_FOLLOW) == 0) {
            UnmarkAsSaving(mFile.Get());
            return kError_None;
        }
        auto const error = errno == EEXIST ? GiveName() : ErrorFromErrno(errno);
        if (error != kError_None) {
            return error;
        }
    }
    auto const error = RenameInto(mPlace, mPlace.directory.Get(), mName.c_str());
    if (error == kError_None) {
        mName.clear();
        UnmarkAsSaving(mFile.Get());
    }
    return error;
}

ErrorCode NewFile::TakePlace() {
    auto const error = PutInPlace();
    return error == kError_None ? SyncDirectory(mPlace) : error;
}

bool IsHiddenSaveName(char const* inName) noexcept {
    constexpr std::size_t kPrefixLength = sizeof kPrefix - 1;
    return std::strncmp(inName, kPrefix, kPrefixLength) == 0 &&
           std::strlen(inName) == kPrefixLength + kDigits &&
           std::strspn(inName + kPrefixLength, "0123456789abcdef") == kDigits;
}

ErrorCode LinkInto(FilePlace const& inPlace, FilePlace const& inFile) {
    struct stat standing {};
    struct stat file {};
    auto const look = [](FilePlace const& inWhich, struct stat& outStatus) {
        return ::fstatat(inWhich.directory.Get(), inWhich.name.c_str(), &outStatus,
                         AT_SYMLINK_NOFOLLOW) == 0;
    };
    // Renaming one name of a file over another one does nothing, and leaves both.
    if (look(inPlace, standing) && look(inFile, file) && IsSameFile(standing, file)) {
        return kError_None;
    }
    auto const name = WithFreeName([&](char const* inName) {
        return ::linkat(inFile.directory.Get(), inFile.name.c_str(), inPlace.directory.Get(),
                        inName, 0) == 0;
    });
    if (name.empty()) {
        bool const hasNoLinks = errno == EPERM || errno == EOPNOTSUPP || errno == ENOSYS;
        return hasNoLinks ? RenameInto(inPlace, inFile.directory.Get(), inFile.name.c_str())
                          : ErrorFromErrno(errno);
    }
    auto const error = RenameInto(inPlace, inPlace.directory.Get(), name.c_str());
    if (error != kError_None) {
        ::unlinkat(inPlace.directory.Get(), name.c_str(), 0);
    }
    return error;
}

ErrorCode TakePermissions(int inFile, struct stat const& inOld) {
    struct stat mine {};
    if (::fstat(inFile, &mine) != 0) {
        return ErrorFromErrno(errno);
    }
    mode_t mode = inOld.st_mode & 07777U;
    bool const hasOtherOwner = mine.st_uid != inOld.st_uid || mine.st_gid != inOld.st_gid;
    if (hasOtherOwner && ::fchown(inFile, inOld.st_uid, inOld.st_gid) != 0) {
        constexpr auto kSameOwner = static_cast<uid_t>(-1);
        bool const hasGroup = ::fchown(inFile, kSameOwner, inOld.st_gid) == 0;
        // A program must not come to run with the rights of somebody else.
        mode &= ~static_cast<mode_t>(hasGroup ? S_ISUID : S_ISUID | S_ISGID);
        if (!hasGroup) {
            // Another group gets no more than everybody has.
            mode &= ~static_cast<mode_t>(S_IRWXG) | (mode & S_IRWXO) << 3;
        }
    }
    if (!hasOtherOwner && mode == (mine.st_mode & 07777U)) {
        return kError_None;
    }
    return ::fchmod(inFile, mode) == 0 ? kError_None : ErrorFromErrno(errno);
}

ErrorCode SyncFile(int inFile) {
    return Uninterrupted([&] { return ::fsync(inFile); }) == 0 ? kError_None
                                                               : ErrorFromErrno(errno);
}

} // namespace brindle::platform
