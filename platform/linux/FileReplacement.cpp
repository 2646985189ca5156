#include "platform/FileReplacement.h"

#include "platform/linux/ErrnoTable.h"
#include "platform/linux/FileTimes.h"
#include "platform/linux/LockedFile.h"
#include "platform/linux/NewFile.h"

#include <sys/stat.h>

#include <limits>
#include <utility>

namespace brindle::platform {

struct FileReplacement::State {
    explicit State(FilePlace inPlace) : place(std::move(inPlace)), file(place) {}

    FilePlace place;
    NewFile file;
    std::uint64_t position = 0;
    bool hasOwnPermissions = false; // so that it does not get those of the old version
};

namespace {

/// What stands in the place itself, not behind a link. Error 2 nothing does.
Result<struct stat> StatusOf(FilePlace const& inPlace) {
    struct stat status {};
    if (::fstatat(inPlace.directory.Get(), inPlace.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) !=
        0) {
        return {{}, ErrorFromErrno(errno)};
    }
    return {status, kError_None};
}

/// The same permissions without the bits that a copy does not inherit.
struct stat WithoutSpecialBits(struct stat inStatus) noexcept {
    inStatus.st_mode &= S_IFMT | S_IRWXU | S_IRWXG | S_IRWXO;
    return inStatus;
}

/// The permissions, without special bits, that a file would pass on to one that is made from it.
Result<struct stat> ModelStatus(UTF16String const& inModel) {
    SystemPath const path(inModel);
    Result<struct stat> model;
    if (inModel.empty() || path.Error() != kError_None ||
        ::fstatat(path.Directory(), path.Tail(), &model.value, 0) != 0 ||
        !S_ISREG(model.value.st_mode)) {
        return {{}, kError_FileNotFound};
    }
    return {WithoutSpecialBits(model.value), kError_None};
}

} // namespace

FileReplacement::FileReplacement() noexcept = default;
FileReplacement::FileReplacement(FileReplacement&& inOther) noexcept = default;
FileReplacement& FileReplacement::operator=(FileReplacement&& inOther) noexcept = default;
FileReplacement::~FileReplacement() = default;

FileReplacement::FileReplacement(std::unique_ptr<State> inState) noexcept
    : mState(std::move(inState)) {}

Result<FileReplacement> FileReplacement::Begin(UTF16String const& inTarget,
                                               UTF16String const& inModel) {
    auto place = FollowLinks(inTarget);
    if (!place) {
        return {{}, place.error};
    }
    auto state = std::make_unique<State>(std::move(place.value));
    auto const old = StatusOf(state->place);
    if (!old && old.error != kError_FileNotFound) {
        return {{}, old.error};
    }
    auto const model = ModelStatus(old ? UTF16String() : inModel);
    auto error = state->file.Create(old || model ? kMode_OwnerOnly : kMode_Anybody);
    if (error == kError_None && model) {
        error = TakePermissions(state->file.Descriptor(), model.value);
    }
    if (error != kError_None) {
        return {{}, error};
    }
    return {FileReplacement(std::move(state)), kError_None};
}

ErrorCode FileReplacement::CheckTarget() const {
    return GuardOld(mState->place).error;
}

ErrorCode FileReplacement::Write(void const* inBytes, std::size_t inCount) {
    std::size_t written = 0;
    auto const error =
        WriteFully(mState->file.Descriptor(), inBytes, inCount, mState->position, written);
    mState->position += written;
    return error;
}

ErrorCode FileReplacement::CopyRest(OpenFile& ioSource) {
    constexpr std::size_t kMostAtOnce = std::size_t{1} << 30;
    for (;;) {
        auto from = static_cast<off_t>(ioSource.mPosition);
        auto to = static_cast<off_t>(mState->position);
        auto const count = Uninterrupted([&] {
            return ::copy_file_range(static_cast<int>(ioSource.mHandle), &from,
                                     mState->file.Descriptor(), &to, kMostAtOnce, 0);
        });
        if (count > 0) {
            ioSource.mPosition += static_cast<std::uint64_t>(count);
            mState->position += static_cast<std::uint64_t>(count);
            continue;
        }
        // Not between these file systems, or not with such files.
        bool const isOffered =
            count == 0 || (errno != EXDEV && errno != EINVAL && errno != ENOSYS &&
                           errno != EOPNOTSUPP && errno != EPERM && errno != EBADF);
        return count == 0 || !isOffered ? kError_None : ErrorFromErrno(errno);
    }
}

std::uint64_t FileReplacement::Position() const noexcept {
    return mState->position;
}

ErrorCode FileReplacement::SetPosition(std::uint64_t inPosition) {
    if (inPosition > kMostPosition) {
        return kError_InvalidParameter;
    }
    mState->position = inPosition;
    return kError_None;
}

Result<std::uint64_t> FileReplacement::Size() const {
    return SizeOf(mState->file.Descriptor());
}

ErrorCode FileReplacement::SetModified(std::uint64_t inTicks) {
    timespec const times[2] = {{0, UTIME_OMIT}, TimeOf(inTicks)};
    return ::futimens(mState->file.Descriptor(), times) == 0 ? kError_None : ErrorFromErrno(errno);
}

ErrorCode FileReplacement::TakePermissionsOf(OpenFile const& inModel) {
    struct stat model {};
    if (::fstat(static_cast<int>(inModel.mHandle), &model) != 0) {
        return ErrorFromErrno(errno);
    }
    mState->hasOwnPermissions = true;
    mode_t const mode = WithoutSpecialBits(model).st_mode & ~static_cast<mode_t>(S_IFMT);
    return ::fchmod(mState->file.Descriptor(), mode) == 0 ? kError_None : ErrorFromErrno(errno);
}

ErrorCode FileReplacement::Commit() {
    auto const old = StatusOf(mState->place);
    if (!old && old.error != kError_FileNotFound) {
        return old.error;
    }
    auto error = old && S_ISREG(old.value.st_mode) && !mState->hasOwnPermissions
                     ? TakePermissions(mState->file.Descriptor(), old.value)
                     : kError_None;
    if (error == kError_None) {
        error = SyncFile(mState->file.Descriptor());
    }
    if (error != kError_None) {
        return error;
    }
    // Locked only now: waiting for the disk may take long.
    auto const guard = GuardOld(mState->place);
    return guard ? mState->file.TakePlace() : guard.error;
}

} // namespace brindle::platform
