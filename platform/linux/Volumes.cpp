#include "platform/Volumes.h"

#include "platform/linux/ErrnoTable.h"
#include "platform/linux/SystemPath.h"

#include <linux/magic.h>
#include <sys/vfs.h>

#include <cstdint>

namespace brindle::platform {

namespace {

Result<struct statfs> FileSystemOf(SystemPath const& inPath) {
    struct statfs fileSystem {};
    FileDescriptor const opened(Uninterrupted(
        [&] { return ::openat(inPath.Directory(), inPath.Tail(), O_PATH | O_CLOEXEC); }));
    if (!opened.IsOpen()) {
        return {{}, inPath.ErrorOf(errno)};
    }
    if (::fstatfs(opened.Get(), &fileSystem) != 0) {
        return {{}, ErrorFromErrno(errno)};
    }
    return {fileSystem, kError_None};
}

VolumeKind KindOf(struct statfs const& inFileSystem) {
    switch (static_cast<std::uint32_t>(inFileSystem.f_type)) {
    case NFS_SUPER_MAGIC:
    case SMB_SUPER_MAGIC:
    case CIFS_SUPER_MAGIC:
    case SMB2_SUPER_MAGIC:
    case AFS_SUPER_MAGIC:
    case AFS_FS_MAGIC:
    case CODA_SUPER_MAGIC:
    case CEPH_SUPER_MAGIC:
    case V9FS_MAGIC:
        return VolumeKind::kRemote;
    default:
        return VolumeKind::kFixed;
    }
}

} // namespace

VolumeKind KindOfVolume(std::string const& inNativeDirectory) {
    auto const fileSystem = FileSystemOf(SystemPath(AT_FDCWD, inNativeDirectory));
    return fileSystem ? KindOf(fileSystem.value) : VolumeKind::kFixed;
}

Result<VolumeSpace> SpaceOf(UTF16String const& inPath) {
    SystemPath const path(inPath);
    if (path.Error() != kError_None) {
        return {{}, path.Error()};
    }
    auto const fileSystem = FileSystemOf(path);
    if (!fileSystem) {
        return {{}, fileSystem.error};
    }
    auto const& counts = fileSystem.value;
    auto const blockSize =
        static_cast<std::uint64_t>(counts.f_frsize != 0 ? counts.f_frsize : counts.f_bsize);
    return {{counts.f_bavail * blockSize, counts.f_blocks * blockSize}, kError_None};
}

} // namespace brindle::platform
