#pragma once

#include <brindle/utility/SystemError.h>

namespace brindle::platform {

/// Why an operation of the system failed; `SystemError` documents the numbers.
using ErrorCode = utility::SystemError;

constexpr ErrorCode kError_None = ErrorCode::kNone;
constexpr ErrorCode kError_FileNotFound = ErrorCode::kFileNotFound;
constexpr ErrorCode kError_PathNotFound = ErrorCode::kPathNotFound;
constexpr ErrorCode kError_TooManyOpenFiles = ErrorCode::kTooManyOpenFiles;
constexpr ErrorCode kError_AccessDenied = ErrorCode::kAccessDenied;
constexpr ErrorCode kError_InvalidHandle = ErrorCode::kInvalidHandle;
constexpr ErrorCode kError_NotEnoughMemory = ErrorCode::kNotEnoughMemory;
constexpr ErrorCode kError_InvalidData = ErrorCode::kInvalidData;
constexpr ErrorCode kError_NotSameDevice = ErrorCode::kNotSameDevice;
constexpr ErrorCode kError_WriteProtected = ErrorCode::kWriteProtected;
constexpr ErrorCode kError_GeneralFailure = ErrorCode::kGeneralFailure;
constexpr ErrorCode kError_SharingViolation = ErrorCode::kSharingViolation;
constexpr ErrorCode kError_EndOfFile = ErrorCode::kEndOfFile;
constexpr ErrorCode kError_NotSupported = ErrorCode::kNotSupported;
constexpr ErrorCode kError_FileExists = ErrorCode::kFileExists;
constexpr ErrorCode kError_InvalidParameter = ErrorCode::kInvalidParameter;
constexpr ErrorCode kError_DiskFull = ErrorCode::kDiskFull;
constexpr ErrorCode kError_InvalidName = ErrorCode::kInvalidName;
constexpr ErrorCode kError_DirectoryNotEmpty = ErrorCode::kDirectoryNotEmpty;
constexpr ErrorCode kError_Busy = ErrorCode::kBusy;
constexpr ErrorCode kError_AlreadyExists = ErrorCode::kAlreadyExists;
constexpr ErrorCode kError_NameTooLong = ErrorCode::kNameTooLong;
constexpr ErrorCode kError_FileTooLarge = ErrorCode::kFileTooLarge;
constexpr ErrorCode kError_NotADirectory = ErrorCode::kNotADirectory;
constexpr ErrorCode kError_IODevice = ErrorCode::kIODevice;
constexpr ErrorCode kError_LinkCircle = ErrorCode::kLinkCircle;

/// The value that an operation returns, or the reason why it failed; `value` then is
/// default-constructed.
template <typename T>
struct [[nodiscard]] Result {
    T value{};
    ErrorCode error = kError_None;

    explicit operator bool() const noexcept { return error == kError_None; }
};

} // namespace brindle::platform
