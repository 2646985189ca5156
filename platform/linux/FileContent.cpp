#include "platform/Files.h"
#include "platform/linux/ErrnoTable.h"
#include "platform/linux/FilePlace.h"
#include "platform/linux/LockedFile.h"
#include "platform/linux/NewFile.h"

#include <sys/stat.h>

#include <algorithm>
#include <string>
#include <utility>

namespace brindle::platform {

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
    auto const place = FollowLinks(inPath);
    if (!place) {
        return place.error;
    }
    auto const path = place.value.Path();
    // Opening the old file for writing asks whether we may, and its lock stays until it is
    // replaced.
    auto const old = OpenLocked(path, O_WRONLY | O_NOFOLLOW, Lock::kExclusive);
    if (!old && old.error != kError_FileNotFound) {
        return old.error;
    }

    NewFile file(place.value);
    auto error = file.Create(old ? kMode_OwnerOnly : kMode_Anybody);
    if (error == kError_None && old) {
        struct stat oldStatus {};
        error = ::fstat(old.value.Get(), &oldStatus) == 0
                    ? TakePermissions(file.Descriptor(), oldStatus)
                    : ErrorFromErrno(errno);
    }
    if (error == kError_None) {
        std::size_t written = 0;
        error = WriteFully(file.Descriptor(), inBytes, inCount, 0, written);
    }
    if (error == kError_None) {
        error = SyncFile(file.Descriptor());
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
    auto const path = place.value.Path();
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
