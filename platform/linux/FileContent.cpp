#include "platform/FileContent.h"

#include "platform/FileReplacement.h"
#include "platform/Files.h"
#include "platform/linux/ErrnoTable.h"
#include "platform/linux/FilePlace.h"
#include "platform/linux/LockedFile.h"

#include <sys/stat.h>

#include <algorithm>
#include <utility>

namespace brindle::platform {

namespace {

struct FileToAppendTo {
    FileDescriptor descriptor;
    bool isNew = false;
};

Result<FileToAppendTo> OpenToAppend(FilePlace const& inPlace) {
    constexpr int kFlags = O_WRONLY | O_APPEND | O_NOFOLLOW;
    for (;;) {
        auto file = OpenLocked(inPlace.Path(), kFlags, FileLock::kTurn);
        bool const isNew = file.error == kError_FileNotFound;
        if (isNew) {
            file = OpenLocked(inPlace.Path(), kFlags | O_CREAT | O_EXCL, FileLock::kTurn);
        }
        bool const isTakenMeanwhile = isNew && file.error == kError_AlreadyExists;
        if (!isTakenMeanwhile) {
            return {{std::move(file.value), isNew}, file.error};
        }
    }
}

/// Cuts off what was appended to a file that had this size, and removes one that was created for
/// it.
void TakeBack(FilePlace const& inPlace, FileToAppendTo const& inFile, off_t inSize) {
    struct stat opened {};
    struct stat named {};
    bool const isEmpty =
        Uninterrupted([&] { return ::ftruncate(inFile.descriptor.Get(), inSize); }) == 0 &&
        inSize == 0;
    if (isEmpty && inFile.isNew && ::fstat(inFile.descriptor.Get(), &opened) == 0 &&
        ::fstatat(inPlace.directory.Get(), inPlace.name.c_str(), &named, AT_SYMLINK_NOFOLLOW) ==
            0 &&
        IsSameFile(opened, named)) {
        ::unlinkat(inPlace.directory.Get(), inPlace.name.c_str(), 0);
    }
}

} // namespace

Result<std::string> ReadContent(UTF16String const& inPath, std::size_t inMost) {
    auto file = OpenForReading(inPath, Sharing::kEverybody);
    if (!file) {
        return {{}, file.error};
    }
    auto const size = file.value.Size();
    if (!size) {
        return {{}, size.error};
    }
    std::string bytes;
    std::size_t length = 0;
    // There is room for one byte more, which stays empty at the end of the file; a file may also
    // grow meanwhile.
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
    auto newVersion = FileReplacement::Begin(inPath);
    auto error = newVersion.error;
    if (error == kError_None) {
        error = newVersion.value.CheckTarget();
    }
    if (error == kError_None) {
        error = newVersion.value.Write(inBytes, inCount);
    }
    if (error == kError_None) {
        error = newVersion.value.Commit();
    }
    return error;
}

ErrorCode AppendContent(UTF16String const& inPath, void const* inBytes, std::size_t inCount) {
    auto const place = FollowLinks(inPath);
    if (!place) {
        return place.error;
    }
    auto const file = OpenToAppend(place.value);
    if (!file) {
        return file.error;
    }
    auto const size = SizeOf(file.value.descriptor.Get());
    if (!size) {
        return size.error;
    }
    std::size_t written = 0;
    auto const error =
        WriteFully(file.value.descriptor.Get(), inBytes, inCount, size.value, written);
    if (error != kError_None) {
        TakeBack(place.value, file.value, static_cast<off_t>(size.value));
    }
    return error;
}

} // namespace brindle::platform
