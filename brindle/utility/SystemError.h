#pragma once

#include <cstdint>

namespace brindle::utility {

/// Why the operating system refused an operation. The numbers mean the same on every system; a
/// failure that has no number of its own is `kGeneralFailure`.
enum class [[nodiscard]] SystemError : std::uint32_t{
    kNone = 0,                ///< no failure, or one that the system has no part in
    kFileNotFound = 2,        ///< the last component of the path does not exist
    kPathNotFound = 3,        ///< a directory on the way does not exist, or is not a directory
    kTooManyOpenFiles = 4,    ///< a limit of the process or of the system
    kAccessDenied = 5,        ///< no permission, or an object of the wrong kind
    kInvalidHandle = 6,       ///< of a file that is not open
    kNotEnoughMemory = 8,     ///< memory of the process or of the system
    kInvalidData = 13,        ///< the content does not have the expected form
    kNotSameDevice = 17,      ///< two paths on different file systems
    kWriteProtected = 19,     ///< a read-only file system
    kGeneralFailure = 31,     ///< a failure that has no number of its own
    kSharingViolation = 32,   ///< somebody else has the file open in a way that excludes this
    kEndOfFile = 38,          ///< fewer bytes than were asked for
    kNotSupported = 50,       ///< an operation that the file system does not have
    kFileExists = 80,         ///< a file that was to be new
    kInvalidParameter = 87,   ///< an argument that the system does not take
    kDiskFull = 112,          ///< also an exhausted quota
    kInvalidName = 123,       ///< a path that contains a NUL
    kDirectoryNotEmpty = 145, ///< a directory that cannot be removed or replaced
    kBusy = 170,              ///< something that the system is using
    kAlreadyExists = 183,     ///< a name that is taken, of whatever kind
    kNameTooLong = 206,       ///< a component, or the path as a whole
    kFileTooLarge = 223,      ///< beyond what the file system, or a limit of the process, allows
    kNotADirectory = 267,     ///< something else where a directory has to be
    kIODevice = 1117,         ///< the device failed
    kLinkCircle = 1921        ///< symbolic links that lead around in a circle
};

} // namespace brindle::utility
