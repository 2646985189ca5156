#pragma once

#include <brindle/utility/TextTypes.h>

#include "platform/Errors.h"
#include "platform/Files.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace brindle::platform {

/// A new version of a file, written where nobody sees it and put in the old version's place
/// atomically: at every moment, and after a crash or a kill, readers find the whole old file or the
/// whole new one.
///
/// A target that is a link stays one, and what it points to is replaced. Until the new version is
/// in place only its owner may read it, unless there was no old version. Move-only; one thread at a
/// time.
class FileReplacement {
public:
    /// Makes the new version, which is empty. If there is no old version, the new one gets the
    /// permissions of the file `inModel`, or what the process's settings say if that is empty or no
    /// file. Errors: 3, 5 (also a directory that takes no new file), 19, 112, 206, 1921.
    static Result<FileReplacement> Begin(UTF16String const& inTarget,
                                         UTF16String const& inModel = {});

    FileReplacement() noexcept;
    FileReplacement(FileReplacement&& inOther) noexcept;
    FileReplacement& operator=(FileReplacement&& inOther) noexcept;
    /// Removes a new version that was not committed.
    ~FileReplacement();

    /// Why `Commit` would refuse at this moment to replace what stands at the target: 5 it is no
    /// regular file, or may not be written; 32 somebody has it open for writing.
    ErrorCode CheckTarget() const;

    /// Writes all the bytes at the position, or fails: 112 a full disk or quota, 223 over the
    /// limit.
    ErrorCode Write(void const* inBytes, std::size_t inCount);
    /// Copies as much of the rest of a file as the system can copy by itself, which on some file
    /// systems only shares the blocks; both positions move behind it. That may be nothing, so the
    /// caller copies what is left. Errors: those of `Write` and of reading.
    ErrorCode CopyRest(OpenFile& ioSource);
    std::uint64_t Position() const noexcept;
    /// Any position up to 2^63 - 1 is allowed, also beyond the end. Error: 87.
    ErrorCode SetPosition(std::uint64_t inPosition);
    Result<std::uint64_t> Size() const;
    /// Gives the new version the time of the last write that it is to have, when everything is
    /// written. Error 5.
    ErrorCode SetModified(std::uint64_t inTicks);
    /// Gives the new version the permissions of another file, without special bits, instead of
    /// those of the old version.
    ErrorCode TakePermissionsOf(OpenFile const& inModel);

    /// Puts the new version in place. It gets the permissions of the old one and, where the process
    /// may set them, its owner and group. When this returns, the new version is on the disk. After
    /// a failure the old version stands, and the new one is gone when this object is; only with
    /// error 1117, a disk that failed, the new version may be in place. Errors: those of
    /// `CheckTarget`, 112. Call it once.
    ErrorCode Commit();

private:
    struct State;
    explicit FileReplacement(std::unique_ptr<State> inState) noexcept;

    std::unique_ptr<State> mState;
};

} // namespace brindle::platform
