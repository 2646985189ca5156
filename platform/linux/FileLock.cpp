#include "platform/linux/FileLock.h"

#include "platform/linux/FileDescriptor.h"

#include <fcntl.h>

#include <cerrno>

namespace brindle::platform {

namespace {

// Single bytes, far beyond the end of any file, stand for what can be held of it. Locks of other
// programs on parts of the content do not matter, those on the whole file do.
enum class Byte : off_t {
    kContent = off_t{1} << 62, // shared by readers, exclusive of who writes in place
    kTurn,  // exclusive of who appends or replaces at this moment, or writes in place
    kSaving // exclusive of the save that made the file
};

struct flock Request(Byte inByte, short inType) noexcept {
    struct flock request {};
    request.l_type = inType;
    request.l_whence = SEEK_SET;
    request.l_start = static_cast<off_t>(inByte);
    request.l_len = 1;
    return request;
}

/// True only if the lock was granted.
bool TakeGrantedLock(int inDescriptor, Byte inByte, short inType) noexcept {
    auto request = Request(inByte, inType);
    return ::fcntl(inDescriptor, F_OFD_SETLK, &request) == 0;
}

/// False only if somebody else's lock is in the way.
bool TryLock(int inDescriptor, Byte inByte, short inType) noexcept {
    return TakeGrantedLock(inDescriptor, inByte, inType) || (errno != EAGAIN && errno != EACCES);
}

/// The kind of lock that keeps this descriptor from an exclusive one: `F_WRLCK`, `F_RDLCK`, or
/// `F_UNLCK` for none.
short LockInTheWay(int inDescriptor, Byte inByte) noexcept {
    auto request = Request(inByte, F_WRLCK);
    return ::fcntl(inDescriptor, F_OFD_GETLK, &request) == 0 ? request.l_type : short{F_UNLCK};
}

bool IsWrittenInPlace(int inDescriptor) noexcept {
    return LockInTheWay(inDescriptor, Byte::kContent) == F_WRLCK;
}

void WaitForTurn(int inDescriptor) noexcept {
    if (TryLock(inDescriptor, Byte::kTurn, F_WRLCK)) {
        return;
    }
    // A turn is always an exclusive lock. A shared one belongs to some other program that locks the
    // whole file for reading: it may last for ever, and keeps nobody from appending or replacing.
    if (LockInTheWay(inDescriptor, Byte::kTurn) == F_RDLCK) {
        return;
    }
    auto request = Request(Byte::kTurn, F_WRLCK);
    Uninterrupted([&] { return ::fcntl(inDescriptor, F_OFD_SETLKW, &request); });
}

} // namespace

ErrorCode TakeLock(int inDescriptor, FileLock inLock) noexcept {
    bool isGranted = true;
    switch (inLock) {
    case FileLock::kNone:
        break;
    case FileLock::kReader:
        isGranted = TryLock(inDescriptor, Byte::kContent, F_RDLCK);
        break;
    case FileLock::kWriter:
        isGranted = TryLock(inDescriptor, Byte::kContent, F_WRLCK);
        if (isGranted) {
            WaitForTurn(inDescriptor);
        }
        break;
    case FileLock::kTurn:
        // Who writes in place does so for as long as it likes, so is not waited for.
        isGranted = !IsWrittenInPlace(inDescriptor);
        if (isGranted) {
            WaitForTurn(inDescriptor);
            isGranted = !IsWrittenInPlace(inDescriptor);
        }
        break;
    }
    return isGranted ? kError_None : kError_SharingViolation;
}

void MarkAsSaving(int inDescriptor) noexcept {
    TryLock(inDescriptor, Byte::kSaving, F_WRLCK);
}

void UnmarkAsSaving(int inDescriptor) noexcept {
    TryLock(inDescriptor, Byte::kSaving, F_UNLCK);
}

bool ClaimAsSaving(int inDescriptor) noexcept {
    return TakeGrantedLock(inDescriptor, Byte::kSaving, F_WRLCK);
}

bool IsMarkedAsSaving(int inDescriptor) noexcept {
    return LockInTheWay(inDescriptor, Byte::kSaving) == F_WRLCK;
}

} // namespace brindle::platform
