#pragma once

#include <cstdint>

namespace brindle::platform {

/// The number of a failure of the system. The numbers have fixed meanings on every system; whatever
/// has no number of its own is `kError_GeneralFailure`.
using ErrorCode = std::uint32_t;

constexpr ErrorCode kError_None = 0;
constexpr ErrorCode kError_FileNotFound = 2; ///< the last component is missing
constexpr ErrorCode kError_PathNotFound =
    3; ///< a directory on the way is missing, or is no directory
constexpr ErrorCode kError_TooManyOpenFiles = 4;
constexpr ErrorCode kError_AccessDenied = 5;
constexpr ErrorCode kError_InvalidHandle = 6;
constexpr ErrorCode kError_NotEnoughMemory = 8;
constexpr ErrorCode kError_InvalidData = 13;
constexpr ErrorCode kError_NotSameDevice = 17;
constexpr ErrorCode kError_WriteProtected = 19;
constexpr ErrorCode kError_GeneralFailure = 31;
constexpr ErrorCode kError_SharingViolation = 32;
constexpr ErrorCode kError_EndOfFile = 38;
constexpr ErrorCode kError_NotSupported = 50;
constexpr ErrorCode kError_FileExists = 80;
constexpr ErrorCode kError_InvalidParameter = 87;
constexpr ErrorCode kError_DiskFull = 112;
constexpr ErrorCode kError_InvalidName = 123; ///< a name with a NUL
constexpr ErrorCode kError_DirectoryNotEmpty = 145;
constexpr ErrorCode kError_Busy = 170;
constexpr ErrorCode kError_AlreadyExists = 183;
constexpr ErrorCode kError_NameTooLong = 206;
constexpr ErrorCode kError_FileTooLarge = 223;
constexpr ErrorCode kError_NotADirectory = 267;
constexpr ErrorCode kError_IODevice = 1117;
constexpr ErrorCode kError_LinkCircle = 1921; ///< symbolic links that lead round in a circle

/// What an operation delivers, with the error if it failed; `value` then is default-constructed.
template <typename T>
struct Result {
    T value{};
    ErrorCode error = kError_None;

    explicit operator bool() const noexcept { return error == kError_None; }
};

} // namespace brindle::platform
