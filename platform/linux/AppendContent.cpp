#include "platform/FileContent.h"

#include "platform/linux/ErrnoTable.h"
#include "platform/linux/FilePlace.h"
#include "platform/linux/LockedFile.h"

#include <sys/stat.h>

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
