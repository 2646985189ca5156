#pragma once

#include <brindle/Export.h>
#include <brindle/utility/SystemError.h>
#include <brindle/utility/TextTypes.h>

#include <memory>

namespace brindle::config {

/// What was to be done with a file or directory when it failed.
enum class FileOperation {
    kNone,    ///< not known, or no file is involved, as for a stream in memory
    kInspect, ///< asking for its kind, size, times or entries
    kOpen,    ///< opening it
    kRead,    ///< reading its content
    kWrite,   ///< writing its content
    kSeek,    ///< setting a position in it
    kCreate,  ///< making it
    kDelete,  ///< removing it
    kRename,  ///< giving it another name
    kReplace, ///< putting a new version in the place of the file
    kMap      ///< making a directory a volume
};

/// What an exception of files, directories and byte streams knows of its cause. Every one of them
/// derives from this, so that one handler can explain them all:
///
///     try {
///         file.Create();
///     } catch (config::FileFailure const& failure) {
///         isDiskFull = failure.Cause() == utility::SystemError::kDiskFull;
///     }
///
/// `config::Describe` tells a user.
///
/// Beside the standard library: as `std::filesystem::filesystem_error`, with `utility::SystemError`
/// instead of a `std::error_code`, and the operation besides.
class BRN_API FileFailure {
public:
    FileFailure() noexcept = default;
    FileFailure(FileFailure const&) noexcept = default;
    FileFailure& operator=(FileFailure const&) noexcept = default;
    virtual ~FileFailure();

    /// A localisation key that says what failed, or null if `what()` does.
    virtual char const* Key() const noexcept;
    /// The full path of the file or directory; empty if none is involved.
    UTF16String Path() const;
    /// The name that it was to get; empty if it was not to be renamed.
    virtual UTF16String NewName() const;
    /// What was to be done when it failed.
    FileOperation Operation() const noexcept { return mOperation; }
    /// Why the system refused; `kNone` if the system was not the reason.
    utility::SystemError Cause() const noexcept { return mCause; }

    /// For those who throw: records what failed and why.
    void SetFailure(FileOperation inOperation, utility::SystemError inCause) noexcept;
    /// For those who throw: the full path. Only the allocator can throw.
    void SetPath(UTF16String const& inPath);

private:
    std::shared_ptr<UTF16String const> mPath; // shared, so that copying an exception cannot throw
    FileOperation mOperation = FileOperation::kNone;
    utility::SystemError mCause = utility::SystemError::kNone;
};

/// The exception with what failed and why: `throw Because(file_exception(file),
/// FileOperation::kOpen, error);`
template <typename Exception>
Exception Because(Exception inException, FileOperation inOperation, utility::SystemError inCause) {
    inException.SetFailure(inOperation, inCause);
    return inException;
}

} // namespace brindle::config
