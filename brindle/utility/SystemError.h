#pragma once

#include <cstdint>

namespace brindle::utility {

/// Why the operating system refused an operation. The numbers mean the same on every system; a
/// failure that has no number of its own is `kGeneralFailure`.
enum class [[nodiscard]] SystemError : std::uint32_t{
    kNone = 0,         ///< no failure, or one that the system has no part in
    kFileNotFound = 2, ///< the last component of the path does not exist
    kPathNotFound = 3, ///< a directory on the way does not exist, or is not a directory
    kTooManyOpenFiles = 4,
    kAccessDenied = 5, ///< no permission, or an object of the wrong kind
    kInvalidHandle = 6,
    kNotEnoughMemory = 8,
    kInvalidData = 13, ///< the content does not have the expected form
    kNotSameDevice = 17,
    kWriteProtected = 19, ///< a read-only file system
    kGeneralFailure = 31,
    kSharingViolation = 32, ///< somebody else has the file open in a way that excludes this
    kEndOfFile = 38,
    kNotSupported = 50,
    kFileExists = 80,
    kInvalidParameter = 87,
    kDiskFull = 112,    ///< also an exhausted quota
    kInvalidName = 123, ///< a path that contains a NUL
    kDirectoryNotEmpty = 145,
    kBusy = 170,
    kAlreadyExists = 183,
    kNameTooLong = 206,
    kFileTooLarge = 223, ///< beyond what the file system, or a limit of the process, allows
    kNotADirectory = 267,
    kIODevice = 1117,  ///< the device failed
    kLinkCircle = 1921 ///< symbolic links that lead around in a circle
};

} // namespace brindle::utility
