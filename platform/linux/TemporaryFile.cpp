#include "platform/TemporaryFile.h"

#include "platform/linux/ErrnoTable.h"
#include "platform/linux/LockedFile.h"
#include "platform/linux/NewFile.h"
#include "platform/linux/SaveMark.h"

#include <sys/stat.h>

#include <array>
#include <utility>

namespace brindle::platform {

struct TemporaryFile::State {
    FilePlace place;
    FileDescriptor file;
    struct stat asCreated {};
};

namespace {

bool IsSameTime(timespec const& inLHS, timespec const& inRHS) noexcept {
    return inLHS.tv_sec == inRHS.tv_sec && inLHS.tv_nsec == inRHS.tv_nsec;
}

/// Dates a new file back, so that every later writing shows, also of nothing, and sets the mark
/// that tells it from other files.
Result<struct stat> DateBack(int inFile) {
    timespec const times[2] = {kSaveMark, {}};
    ::futimens(inFile, times);
    struct stat status {};
    if (::fstat(inFile, &status) != 0) {
        return {{}, ErrorFromErrno(errno)};
    }
    return {status, kError_None};
}

bool IsWritten(struct stat const& inFile, struct stat const& inAsCreated) noexcept {
    return !IsSameFile(inFile, inAsCreated) || inFile.st_size != 0 ||
           !IsSameTime(inFile.st_mtim, inAsCreated.st_mtim);
}

/// Opens what stands under the name. Error 2 that belongs to another save.
Result<FileDescriptor> OpenOwn(FilePlace const& inPlace, struct stat const& inAsCreated,
                               struct stat& outStatus) {
    auto file = OpenLocked(inPlace.Path(), O_RDONLY | O_NOFOLLOW, FileLock::kReader);
    if (!file) {
        return file;
    }
    if (::fstat(file.value.Get(), &outStatus) != 0) {
        return {{}, ErrorFromErrno(errno)};
    }
    if (!IsSameFile(outStatus, inAsCreated) && IsMarkedAsSaving(file.value.Get())) {
        return {{}, kError_FileNotFound};
    }
    return file;
}

ErrorCode CopyContent(int inFrom, int inTo) {
    std::array<char, 16384> block; // every byte that is written was read before
    std::uint64_t offset = 0;
    for (;;) {
        auto const count = Uninterrupted([&] {
            return ::pread(inFrom, block.data(), block.size(), static_cast<off_t>(offset));
        });
        if (count <= 0) {
            return count == 0 ? kError_None : ErrorFromErrno(errno);
        }
        std::size_t written = 0;
        auto const error =
            WriteFully(inTo, block.data(), static_cast<std::size_t>(count), offset, written);
        if (error != kError_None) {
            return error;
        }
        offset += written;
    }
}

/// Puts a file with the same content and permissions in the place.
ErrorCode PutCopyInPlace(int inFile, FilePlace const& inPlace) {
    struct stat status {};
    if (::fstat(inFile, &status) != 0) {
        return ErrorFromErrno(errno);
    }
    NewFile copy(inPlace);
    auto error = copy.Create(kMode_OwnerOnly);
    if (error == kError_None) {
        error = CopyContent(inFile, copy.Descriptor());
    }
    if (error == kError_None) {
        error = TakePermissions(copy.Descriptor(), status);
    }
    if (error == kError_None) {
        error = SyncFile(copy.Descriptor());
    }
    if (error != kError_None) {
        return error;
    }
    auto const old = GuardOld(inPlace);
    return old ? copy.TakePlace() : old.error;
}

/// Before the file takes its place, where nobody may mistake it for what a killed save left.
ErrorCode RemoveSaveMark(int inFile, struct stat const& inStatus) {
    timespec const now[2] = {{0, UTIME_NOW}, {0, UTIME_OMIT}};
    return !HasSaveMark(inStatus) || ::futimens(inFile, now) == 0 ? kError_None
                                                                  : ErrorFromErrno(errno);
}

/// Renames the open file over what stands in the place, and nothing else that took its name
/// meanwhile.
ErrorCode MoveInto(FilePlace const& inTarget, FilePlace const& inFrom, int inFile,
                   struct stat const& inStatus) {
    auto const guard = GuardOld(inTarget);
    if (!guard) {
        return guard.error;
    }
    struct stat named {};
    if (::fstatat(inFrom.directory.Get(), inFrom.name.c_str(), &named, AT_SYMLINK_NOFOLLOW) != 0 ||
        !IsSameFile(named, inStatus)) {
        return kError_FileNotFound;
    }
    struct stat old {};
    if (guard.value.IsOpen() && ::fstat(guard.value.Get(), &old) == 0 && IsSameFile(old, named)) {
        // Renaming one name of a file over another one of it does nothing.
        return ::unlinkat(inFrom.directory.Get(), inFrom.name.c_str(), 0) == 0
                   ? kError_None
                   : ErrorFromErrno(errno);
    }
    auto const error = RemoveSaveMark(inFile, inStatus);
    return error == kError_None ? RenameInto(inTarget, inFrom.directory.Get(), inFrom.name.c_str())
                                : error;
}

} // namespace

TemporaryFile::TemporaryFile() noexcept = default;
TemporaryFile::TemporaryFile(TemporaryFile&& inOther) noexcept = default;
TemporaryFile& TemporaryFile::operator=(TemporaryFile&& inOther) noexcept = default;
TemporaryFile::~TemporaryFile() = default;

TemporaryFile::TemporaryFile(std::unique_ptr<State> inState) noexcept
    : mState(std::move(inState)) {}

Result<TemporaryFile> TemporaryFile::Create(UTF16String const& inPath, Readers inReaders) {
    auto place = PlaceOf(inPath);
    if (!place) {
        return {{}, place.error};
    }
    auto state = std::make_unique<State>();
    state->place = std::move(place.value);
    state->file = FileDescriptor(Uninterrupted([&] {
        return ::openat(state->place.directory.Get(), state->place.name.c_str(),
                        O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                        inReaders == Readers::kOwner ? kMode_OwnerOnly : kMode_Anybody);
    }));
    if (!state->file.IsOpen()) {
        return {{}, ErrorFromErrno(errno)};
    }
    MarkAsSaving(state->file.Get());
    auto const status = DateBack(state->file.Get());
    if (!status) {
        ::unlinkat(state->place.directory.Get(), state->place.name.c_str(), 0);
        return {{}, status.error};
    }
    state->asCreated = status.value;
    return {TemporaryFile(std::move(state)), kError_None};
}

ErrorCode TemporaryFile::Remove() {
    auto const& place = mState->place;
    struct stat named {};
    if (::fstatat(place.directory.Get(), place.name.c_str(), &named, AT_SYMLINK_NOFOLLOW) != 0) {
        return ErrorFromErrno(errno);
    }
    if (S_ISREG(named.st_mode) && !IsSameFile(named, mState->asCreated)) {
        auto const file = OpenLocked(place.Path(), O_RDONLY | O_NOFOLLOW, FileLock::kNone);
        if (!file) {
            return file.error;
        }
        if (IsMarkedAsSaving(file.value.Get())) {
            return kError_FileNotFound;
        }
    }
    return ::unlinkat(place.directory.Get(), place.name.c_str(), 0) == 0 ? kError_None
                                                                         : ErrorFromErrno(errno);
}

ErrorCode TemporaryFile::TakePlaceOf(UTF16String const& inTarget) {
    struct stat status {};
    auto file = OpenOwn(mState->place, mState->asCreated, status);
    if (!file) {
        return file.error;
    }
    if (!IsWritten(status, mState->asCreated)) {
        return kError_FileNotFound;
    }
    auto const target = FollowLinks(inTarget);
    if (!target) {
        return target.error;
    }

    struct stat old {};
    bool const hasOld = ::fstatat(target.value.directory.Get(), target.value.name.c_str(), &old,
                                  AT_SYMLINK_NOFOLLOW) == 0;
    if (!hasOld && errno != ENOENT) {
        return ErrorFromErrno(errno);
    }
    auto error =
        hasOld && S_ISREG(old.st_mode) ? TakePermissions(file.value.Get(), old) : kError_None;
    if (error == kError_None) {
        error = SyncFile(file.value.Get());
    }
    if (error == kError_None) {
        error = MoveInto(target.value, mState->place, file.value.Get(), status);
    }
    if (error == kError_None) {
        // It is everybody's file now, so it is not kept locked while the disk is waited for.
        file.value = FileDescriptor();
        return SyncDirectory(target.value);
    }
    if (error == kError_NotSameDevice) {
        error = PutCopyInPlace(file.value.Get(), target.value);
        if (error == kError_None) {
            ::unlinkat(mState->place.directory.Get(), mState->place.name.c_str(), 0);
        }
    }
    return error;
}

} // namespace brindle::platform
