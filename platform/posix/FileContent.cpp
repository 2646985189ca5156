#include "platform/Files.h"
#include "platform/posix/ErrnoTable.h"
#include "platform/posix/LockedFile.h"
#include "platform/posix/PathAt.h"

#include <sys/random.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdio>
#include <string>
#include <utility>

namespace brindle::platform {

namespace {

/// Where a file stands after every link is followed: its name in an open directory.
struct Place {
    FileDescriptor directory;
    std::string name;
};

Result<Place> FollowLinks(UTF16String const& inPath) {
    // As many as the kernel follows.
    constexpr int kMostLinks = 40;

    PathAt const first(inPath);
    if (first.Error() != kError_None) {
        return {{}, first.Error()};
    }
    int base = first.Directory();
    std::string native = first.Tail();
    if (native.empty()) {
        return {{}, kError_PathNotFound};
    }

    Place place;
    for (int links = 0; links <= kMostLinks; ++links) {
        PathAt const path(base, std::move(native));
        if (path.Error() != kError_None) {
            return {{}, path.Error()};
        }
        place.name = path.TailName();
        if (place.name.empty() || place.name == "." || place.name == "..") {
            return {{}, kError_AccessDenied};
        }
        auto const directoryPath = path.TailDirectory();
        // Not every directory that may be written may also be listed, so opened for reading.
        FileDescriptor directory;
        for (int const access : {O_RDONLY, O_PATH}) {
            directory = FileDescriptor(Uninterrupted([&] {
                return ::openat(path.Directory(), directoryPath.c_str(),
                                access | O_DIRECTORY | O_CLOEXEC);
            }));
            if (directory.IsOpen() || errno != EACCES) {
                break;
            }
        }
        if (!directory.IsOpen()) {
            return {{}, errno == ENOENT ? kError_PathNotFound : ErrorFromErrno(errno)};
        }
        place.directory = std::move(directory); // not earlier: the path may start at the old one

        std::array<char, PATH_MAX> link{};
        auto const length =
            ::readlinkat(place.directory.Get(), place.name.c_str(), link.data(), link.size());
        if (length < 0) {
            return {std::move(place), kError_None};
        }
        native.assign(link.data(), static_cast<std::size_t>(length));
        base = place.directory.Get();
    }
    return {{}, kError_LinkCircle};
}

/// A new file in the directory of a place. It is removed again unless it takes the place.
class NewFile {
public:
    explicit NewFile(Place const& inPlace) : mPlace(inPlace) {}
    NewFile(NewFile const&) = delete;
    NewFile& operator=(NewFile const&) = delete;
    ~NewFile() {
        if (mFile.IsOpen() && !mHasTakenPlace) {
            ::unlinkat(mPlace.directory.Get(), mName.c_str(), 0);
        }
    }

    ErrorCode Create(mode_t inMode) {
        do {
            mName = RandomName();
            mFile = FileDescriptor(Uninterrupted([&] {
                return ::openat(mPlace.directory.Get(), mName.c_str(),
                                O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, inMode);
            }));
        } while (!mFile.IsOpen() && errno == EEXIST);
        return mFile.IsOpen() ? kError_None : ErrorFromErrno(errno);
    }

    /// Takes over the permissions of the old file and, where the process may, its owner.
    ErrorCode TakePermissions(struct stat const& inOld) {
        struct stat mine {};
        if (::fstat(mFile.Get(), &mine) != 0) {
            return ErrorFromErrno(errno);
        }
        mode_t mode = inOld.st_mode & 07777U;
        bool const hasOtherOwner = mine.st_uid != inOld.st_uid || mine.st_gid != inOld.st_gid;
        if (hasOtherOwner && ::fchown(mFile.Get(), inOld.st_uid, inOld.st_gid) != 0) {
            constexpr auto kSameOwner = static_cast<uid_t>(-1);
            bool const hasGroup = ::fchown(mFile.Get(), kSameOwner, inOld.st_gid) == 0;
            // A program must not come to run with the rights of somebody else.
            mode &= ~static_cast<mode_t>(hasGroup ? S_ISUID : S_ISUID | S_ISGID);
            if (!hasGroup) {
                // Another group gets no more than everybody has.
                mode &= ~static_cast<mode_t>(S_IRWXG) | (mode & S_IRWXO) << 3;
            }
        }
        return ::fchmod(mFile.Get(), mode) == 0 ? kError_None : ErrorFromErrno(errno);
    }

    ErrorCode Fill(void const* inBytes, std::size_t inCount) {
        std::size_t written = 0;
        auto const error = WriteFully(mFile.Get(), inBytes, inCount, 0, written);
        if (error != kError_None) {
            return error;
        }
        return Uninterrupted([&] { return ::fsync(mFile.Get()); }) == 0 ? kError_None
                                                                        : ErrorFromErrno(errno);
    }

    ErrorCode TakePlace() {
        int const directory = mPlace.directory.Get();
        if (::renameat(directory, mName.c_str(), directory, mPlace.name.c_str()) != 0) {
            return ErrorFromErrno(errno);
        }
        mHasTakenPlace = true;
        // A directory that cannot be synced, or not by us, keeps its own time for it.
        if (Uninterrupted([&] { return ::fsync(directory); }) != 0 && errno == EIO) {
            return kError_IODevice;
        }
        return kError_None;
    }

private:
    static std::string RandomName() {
        unsigned long long number = 0;
        // The exclusive creation is what makes the name unique; the number only makes it so at
        // once.
        if (::getrandom(&number, sizeof number, 0) < 0) {
            number = static_cast<unsigned long long>(::getpid());
        }
        std::array<char, 32> name{};
        std::snprintf(name.data(), name.size(), ".brindle-%016llx", number);
        return name.data();
    }

    Place const& mPlace;
    std::string mName;
    FileDescriptor mFile;
    bool mHasTakenPlace = false;
};

} // namespace

Result<std::string> ReadContent(UTF16String const& inPath, std::size_t inMost) {
    auto file = OpenForReading(inPath);
    if (!file) {
        return {{}, file.error};
    }
    auto const size = file.value.Size();
    if (!size) {
        return {{}, size.error};
    }
    std::string bytes;
    std::size_t length = 0;
    // Room for one byte more shows that there is none; a file may also have grown meanwhile.
    auto room = static_cast<std::size_t>(std::min<std::uint64_t>(size.value, inMost)) + 1;
    while (room <= inMost + 1) {
        bytes.resize(room);
        auto const count = file.value.Read(bytes.data() + length, room - length);
        if (!count) {
            return {{}, count.error};
        }
        length += count.value;
        if (length < room) {
            bytes.resize(length);
            return {std::move(bytes), kError_None};
        }
        room = room <= inMost ? std::min(2 * room, inMost + 1) : room + 1;
    }
    return {{}, kError_InvalidData};
}

ErrorCode ReplaceContent(UTF16String const& inPath, void const* inBytes, std::size_t inCount) {
    constexpr mode_t kAnybody = 0666;
    constexpr mode_t kOwnerOnly = 0600;

    auto const place = FollowLinks(inPath);
    if (!place) {
        return place.error;
    }
    PathAt const path(place.value.directory.Get(), place.value.name);
    // Opening the old file for writing asks whether we may, and its lock stays until it is
    // replaced.
    auto const old = OpenLocked(path, O_WRONLY | O_NOFOLLOW, Lock::kExclusive);
    if (!old && old.error != kError_FileNotFound) {
        return old.error;
    }

    NewFile file(place.value);
    auto error = file.Create(old ? kOwnerOnly : kAnybody);
    if (error == kError_None && old) {
        struct stat oldStatus {};
        error = ::fstat(old.value.Get(), &oldStatus) == 0 ? file.TakePermissions(oldStatus)
                                                          : ErrorFromErrno(errno);
    }
    if (error == kError_None) {
        error = file.Fill(inBytes, inCount);
    }
    if (error == kError_None) {
        error = file.TakePlace();
    }
    return error;
}

ErrorCode AppendContent(UTF16String const& inPath, void const* inBytes, std::size_t inCount) {
    auto const place = FollowLinks(inPath);
    if (!place) {
        return place.error;
    }
    PathAt const path(place.value.directory.Get(), place.value.name);
    struct stat status {};
    bool const isNew = ::fstatat(path.Directory(), path.Tail(), &status, AT_SYMLINK_NOFOLLOW) != 0;
    auto const file =
        OpenLocked(path, O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW, Lock::kExclusive);
    if (!file) {
        return file.error;
    }
    if (::fstat(file.value.Get(), &status) != 0) {
        return ErrorFromErrno(errno);
    }

    std::size_t written = 0;
    auto const error = WriteFully(file.value.Get(), inBytes, inCount,
                                  static_cast<std::uint64_t>(status.st_size), written);
    if (error != kError_None) {
        bool const isTakenBack =
            written == 0 ||
            Uninterrupted([&] { return ::ftruncate(file.value.Get(), status.st_size); }) == 0;
        if (isTakenBack && isNew && status.st_size == 0) {
            ::unlinkat(path.Directory(), path.Tail(), 0);
        }
    }
    return error;
}

} // namespace brindle::platform
