#include "platform/Files.h"
#include "platform/linux/ErrnoTable.h"
#include "platform/linux/FilePlace.h"
#include "platform/linux/LockedFile.h"
#include "platform/linux/NewFile.h"

#include <sys/stat.h>

#include <array>

namespace brindle::platform {

namespace {

ErrorCode CopyContent(int inFrom, int inTo) {
    std::array<char, 16384> block; // every byte that is written was read before
    std::uint64_t offset = 0;
    for (;;) {
        auto const count = Uninterrupted([&] {
            return ::pread(inFrom, block.data(), block.size(), static_cast<off_t>(offset));
        });
        if (count <= 0) {
            return count == 0 ? kError_None : ErrorFromErrno(errno);
        }
        std::size_t written = 0;
        auto const error =
            WriteFully(inTo, block.data(), static_cast<std::size_t>(count), offset, written);
        if (error != kError_None) {
            return error;
        }
        offset += written;
    }
}

/// Puts a file of the same content and permissions in the place.
ErrorCode PutCopyInPlace(int inFile, FilePlace const& inPlace) {
    struct stat status {};
    if (::fstat(inFile, &status) != 0) {
        return ErrorFromErrno(errno);
    }
    NewFile copy(inPlace);
    auto error = copy.Create(kMode_OwnerOnly);
    if (error == kError_None) {
        error = CopyContent(inFile, copy.Descriptor());
    }
    if (error == kError_None) {
        error = TakePermissions(copy.Descriptor(), status);
    }
    if (error == kError_None) {
        error = SyncFile(copy.Descriptor());
    }
    if (error != kError_None) {
        return error;
    }
    auto const old = GuardOld(inPlace);
    return old ? copy.TakePlace() : old.error;
}

} // namespace

ErrorCode ReplaceFile(UTF16String const& inFrom, UTF16String const& inTo) {
    SystemPath const from(inFrom);
    auto file = OpenLocked(from, O_RDONLY | O_NOFOLLOW, Lock::kShared);
    if (!file) {
        return file.error;
    }
    auto const place = FollowLinks(inTo);
    if (!place) {
        return place.error;
    }

    struct stat old {};
    bool const hasOld = ::fstatat(place.value.directory.Get(), place.value.name.c_str(), &old,
                                  AT_SYMLINK_NOFOLLOW) == 0;
    if (!hasOld && errno != ENOENT) {
        return ErrorFromErrno(errno);
    }
    auto error =
        hasOld && S_ISREG(old.st_mode) ? TakePermissions(file.value.Get(), old) : kError_None;
    if (error == kError_None) {
        error = SyncFile(file.value.Get());
    }
    if (error != kError_None) {
        return error;
    }

    {
        auto const guard = GuardOld(place.value);
        error = guard ? RenameInto(place.value, from.Directory(), from.Tail()) : guard.error;
    }
    if (error == kError_None) {
        // Everybody's file now, so not locked while the disk is waited for.
        file.value = FileDescriptor();
        return SyncDirectory(place.value);
    }
    if (error == kError_NotSameDevice) {
        error = PutCopyInPlace(file.value.Get(), place.value);
        if (error == kError_None) {
            ::unlinkat(from.Directory(), from.Tail(), 0);
        }
    }
    return error;
}

} // namespace brindle::platform
