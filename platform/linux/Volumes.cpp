#include "platform/Volumes.h"

#include "platform/linux/SystemPath.h"

#include <linux/magic.h>
#include <sys/vfs.h>

#include <cstdint>

namespace brindle::platform {

namespace {

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
    SystemPath const path(AT_FDCWD, inNativeDirectory);
    FileDescriptor const directory(Uninterrupted(
        [&] { return ::openat(path.Directory(), path.Tail(), O_PATH | O_DIRECTORY | O_CLOEXEC); }));
    struct statfs fileSystem {};
    return directory.IsOpen() && ::fstatfs(directory.Get(), &fileSystem) == 0 ? KindOf(fileSystem)
                                                                              : VolumeKind::kFixed;
}

} // namespace brindle::platform
