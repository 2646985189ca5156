#include "platform/SaveRemains.h"

#include "platform/linux/ErrnoTable.h"
#include "platform/linux/LockedFile.h"
#include "platform/linux/NewFile.h"
#include "platform/linux/SaveMark.h"

#include <linux/magic.h>
#include <sys/vfs.h>

#include <algorithm>

namespace brindle::platform {

namespace {

Result<struct stat> StatusOf(int inDirectory, char const* inName) {
    struct stat status {};
    if (::fstatat(inDirectory, inName, &status, AT_SYMLINK_NOFOLLOW) != 0) {
        return {{}, ErrorFromErrno(errno)};
    }
    return {status, kError_None};
}

/// Whether the locks of a file system are those of every machine that uses it. Some keep them on
/// each machine apart without saying so, so that only disks of this machine are trusted.
bool KnowsEveryLock(int inDirectory) {
    struct statfs fileSystem {};
    if (::fstatfs(inDirectory, &fileSystem) != 0) {
        return false;
    }
    switch (static_cast<std::uint32_t>(fileSystem.f_type)) {
    case BTRFS_SUPER_MAGIC:
    case EXT4_SUPER_MAGIC:
    case F2FS_SUPER_MAGIC:
    case MSDOS_SUPER_MAGIC:
    case EXFAT_SUPER_MAGIC:
    case OVERLAYFS_SUPER_MAGIC:
    case RAMFS_MAGIC:
    case TMPFS_MAGIC:
    case XFS_SUPER_MAGIC:
        return true;
    default:
        return false;
    }
}

/// True for a file that its save may have left. A hidden file that is empty may be one that another
/// process has created at this moment and not locked yet; one with two names is being linked.
bool MayBeLeft(FilePlace const& inPlace, struct stat const& inFile) {
    bool const isHidden = IsHiddenSaveName(inPlace.name.c_str()) && inFile.st_size != 0;
    return S_ISREG(inFile.st_mode) && inFile.st_nlink == 1 && (isHidden || HasSaveMark(inFile));
}

} // namespace

bool IsHiddenSaveName(UTF16String const& inName) {
    return std::all_of(inName.begin(), inName.end(), [](auto inUnit) { return inUnit < 128; }) &&
           IsHiddenSaveName(std::string(inName.begin(), inName.end()).c_str());
}

bool HasSaveMark(UTF16String const& inPath) {
    SystemPath const path(inPath);
    if (path.Error() != kError_None) {
        return false;
    }
    auto const status = StatusOf(path.Directory(), path.Tail());
    return status && HasSaveMark(status.value);
}

ErrorCode RemoveSaveRemains(UTF16String const& inPath) {
    auto const place = PlaceOf(inPath);
    if (!place) {
        return place.error;
    }
    int const directory = place.value.directory.Get();
    char const* const name = place.value.name.c_str();
    auto const found = StatusOf(directory, name);
    if (!found) {
        return found.error;
    }
    if (!MayBeLeft(place.value, found.value)) {
        return kError_InvalidData;
    }
    if (!KnowsEveryLock(directory)) {
        return kError_NotSupported;
    }
    auto const file = OpenLocked(place.value.Path(), O_WRONLY | O_NOFOLLOW, FileLock::kNone);
    if (!file) {
        return file.error;
    }
    // From here on no other process removes the file, so that what is removed below is this one.
    if (!ClaimAsSaving(file.value.Get())) {
        return kError_SharingViolation;
    }
    struct stat opened {};
    if (::fstat(file.value.Get(), &opened) != 0) {
        return ErrorFromErrno(errno);
    }
    auto const named = StatusOf(directory, name);
    if (!named || !IsSameFile(named.value, opened) || !MayBeLeft(place.value, opened)) {
        return kError_FileNotFound;
    }
    return ::unlinkat(directory, name, 0) == 0 ? kError_None : ErrorFromErrno(errno);
}

} // namespace brindle::platform
