#include "platform/linux/ErrnoTable.h"

#include <cerrno>

namespace brindle::platform {

ErrorCode ErrorFromErrno(int inErrno) noexcept {
    switch (inErrno) {
    case 0:
        return kError_None;
    case ENOENT:
        return kError_FileNotFound;
    case ENOTDIR:
        return kError_PathNotFound;
    case EMFILE:
    case ENFILE:
        return kError_TooManyOpenFiles;
    case EACCES:
    case EPERM:
    case EISDIR:
        return kError_AccessDenied;
    case EBADF:
        return kError_InvalidHandle;
    case ENOMEM:
        return kError_NotEnoughMemory;
    case EXDEV:
        return kError_NotSameDevice;
    case EROFS:
        return kError_WriteProtected;
    case EWOULDBLOCK:
    case ETXTBSY:
        return kError_SharingViolation;
    case ENOSYS:
    case EOPNOTSUPP:
        return kError_NotSupported;
    case EINVAL:
        return kError_InvalidParameter;
    case ENOSPC:
    case EDQUOT:
        return kError_DiskFull;
    case ENOTEMPTY:
        return kError_DirectoryNotEmpty;
    case EBUSY:
        return kError_Busy;
    case EEXIST:
        return kError_AlreadyExists;
    case ENAMETOOLONG:
        return kError_NameTooLong;
    case EFBIG:
    case EOVERFLOW:
        return kError_FileTooLarge;
    case EIO:
        return kError_IODevice;
    case ELOOP:
        return kError_LinkCircle;
    default:
        return kError_GeneralFailure;
    }
}

} // namespace brindle::platform
