#include "host/files/SystemReason.h"

namespace brindle::host {

std::string ReasonText(utility::SystemError inError) {
    using utility::SystemError;
    switch (inError) {
    case SystemError::kFileNotFound:
    case SystemError::kPathNotFound:
        return "no such file or directory";
    case SystemError::kTooManyOpenFiles:
        return "too many open files";
    case SystemError::kAccessDenied:
        return "permission denied";
    case SystemError::kNotEnoughMemory:
        return "not enough memory";
    case SystemError::kWriteProtected:
        return "the file system is read-only";
    case SystemError::kSharingViolation:
        return "is open in another program";
    case SystemError::kEndOfFile:
        return "ends too soon";
    case SystemError::kNotSupported:
        return "is not supported by the file system";
    case SystemError::kFileExists:
    case SystemError::kAlreadyExists:
        return "exists already";
    case SystemError::kDiskFull:
        return "the disk is full";
    case SystemError::kInvalidName:
        return "is no valid name";
    case SystemError::kDirectoryNotEmpty:
        return "the directory is not empty";
    case SystemError::kBusy:
        return "is busy";
    case SystemError::kNameTooLong:
        return "the name is too long";
    case SystemError::kFileTooLarge:
        return "the file becomes too large";
    case SystemError::kNotADirectory:
        return "is not a directory";
    case SystemError::kIODevice:
        return "the device failed";
    case SystemError::kLinkCircle:
        return "symbolic links lead in a circle";
    default:
        return "cannot be used";
    }
}

} // namespace brindle::host
