#include "platform/LogFile.h"

#include "platform/linux/ErrnoTable.h"
#include "platform/linux/LockedFile.h"
#include "platform/linux/NewFile.h"

#include <fcntl.h>

#include <utility>

namespace brindle::platform {

namespace {

/// A new file that nobody else can open for writing, with the permissions of the old one, if there
/// is one.
ErrorCode CreateNew(NewFile& outFile, FileDescriptor const& inOld) {
    auto error = outFile.Create(inOld.IsOpen() ? kMode_OwnerOnly : kMode_Anybody);
    struct stat old {};
    if (error == kError_None && inOld.IsOpen() && ::fstat(inOld.Get(), &old) == 0) {
        error = TakePermissions(outFile.Descriptor(), old);
    }
    if (error == kError_None) {
        error = TakeLock(outFile.Descriptor(), FileLock::kWriter);
    }
    // Somebody may empty the file to make room.
    if (error == kError_None && ::fcntl(outFile.Descriptor(), F_SETFL, O_APPEND) != 0) {
        error = ErrorFromErrno(errno);
    }
    return error;
}

/// Gives the old log another name, beside its own if the file system can do that.
ErrorCode Keep(FilePlace const& inOld, UTF16String const& inPrevious) {
    // What is replaced is a link itself, never what it points to.
    auto const previous = PlaceOf(inPrevious);
    return previous ? LinkInto(previous.value, inOld) : previous.error;
}

} // namespace

LogFile::LogFile(LogFile&& inOther) noexcept
    : mHandle(std::exchange(inOther.mHandle, kInvalidHandle)) {}

LogFile& LogFile::operator=(LogFile&& inOther) noexcept {
    std::swap(mHandle, inOther.mHandle);
    return *this;
}

LogFile::~LogFile() {
    if (mHandle != kInvalidHandle) {
        ::close(static_cast<int>(mHandle));
    }
}

Result<LogFile> LogFile::Start(UTF16String const& inPath, UTF16String const& inPrevious) {
    auto const place = FollowLinks(inPath);
    if (!place) {
        return {{}, place.error};
    }
    // Held to the end, so that of several processes that start at the same time one has the log.
    auto const old = GuardOld(place.value);
    if (!old) {
        return {{}, old.error};
    }
    NewFile file(place.value);
    auto error = CreateNew(file, old.value);
    if (error != kError_None) {
        return {{}, error};
    }
    if (old.value.IsOpen() && !inPrevious.empty()) {
        // An old log that cannot be kept does not stand in the way of the new one.
        static_cast<void>(Keep(place.value, inPrevious));
    }
    // Not synced: after a crash of the machine, either log will do.
    error = file.PutInPlace();
    if (error != kError_None) {
        return {{}, error};
    }
    return {LogFile(file.ReleaseDescriptor()), kError_None};
}

ErrorCode LogFile::Append(void const* inBytes, std::size_t inCount) {
    auto const file = static_cast<int>(mHandle);
    std::size_t written = 0;
    auto const error = WriteFully(file, inBytes, inCount, 0, written); // always at the end
    if (error != kError_None && written != 0) {
        auto const size = SizeOf(file);
        if (size && size.value >= written) {
            Uninterrupted(
                [&] { return ::ftruncate(file, static_cast<off_t>(size.value - written)); });
        }
    }
    return error;
}

} // namespace brindle::platform
