#include "platform/FileReplacement.h"

#include "platform/linux/ErrnoTable.h"
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

/// The permissions, without special bits, that a file would pass on to one that is made from it.
Result<struct stat> ModelStatus(UTF16String const& inModel) {
    SystemPath const path(inModel);
    Result<struct stat> model;
    if (inModel.empty() || path.Error() != kError_None ||
        ::fstatat(path.Directory(), path.Tail(), &model.value, 0) != 0 ||
        !S_ISREG(model.value.st_mode)) {
        return {{}, kError_FileNotFound};
    }
    model.value.st_mode &= S_IFMT | S_IRWXU | S_IRWXG | S_IRWXO;
    return model;
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

ErrorCode FileReplacement::Commit() {
    auto const old = StatusOf(mState->place);
    if (!old && old.error != kError_FileNotFound) {
        return old.error;
    }
    auto error = old && S_ISREG(old.value.st_mode)
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
