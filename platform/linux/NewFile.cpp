#include "platform/linux/NewFile.h"

#include "platform/linux/ErrnoTable.h"

#include <sys/random.h>

#include <array>
#include <cstdio>

namespace brindle::platform {

namespace {

std::string RandomName() {
    unsigned long long number = 0;
    // The exclusive creation is what makes the name unique; the number only makes it so at once.
    if (::getrandom(&number, sizeof number, 0) < 0) {
        number = static_cast<unsigned long long>(::getpid());
    }
    std::array<char, 32> name{};
    std::snprintf(name.data(), name.size(), ".brindle-%016llx", number);
    return name.data();
}

} // namespace

NewFile::~NewFile() {
    if (mFile.IsOpen() && !mHasTakenPlace) {
        ::unlinkat(mPlace.directory.Get(), mName.c_str(), 0);
    }
}

ErrorCode NewFile::Create(mode_t inMode) {
    do {
        mName = RandomName();
        mFile = FileDescriptor(Uninterrupted([&] {
            return ::openat(mPlace.directory.Get(), mName.c_str(),
                            O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, inMode);
        }));
    } while (!mFile.IsOpen() && errno == EEXIST);
    return mFile.IsOpen() ? kError_None : ErrorFromErrno(errno);
}

ErrorCode NewFile::TakePlace() {
    auto const error = RenameInto(mPlace, mPlace.directory.Get(), mName.c_str());
    if (error != kError_None) {
        return error;
    }
    mHasTakenPlace = true;
    return SyncDirectory(mPlace);
}

ErrorCode TakePermissions(int inFile, struct stat const& inOld) {
    struct stat mine {};
    if (::fstat(inFile, &mine) != 0) {
        return ErrorFromErrno(errno);
    }
    mode_t mode = inOld.st_mode & 07777U;
    bool const hasOtherOwner = mine.st_uid != inOld.st_uid || mine.st_gid != inOld.st_gid;
    if (hasOtherOwner && ::fchown(inFile, inOld.st_uid, inOld.st_gid) != 0) {
        constexpr auto kSameOwner = static_cast<uid_t>(-1);
        bool const hasGroup = ::fchown(inFile, kSameOwner, inOld.st_gid) == 0;
        // A program must not come to run with the rights of somebody else.
        mode &= ~static_cast<mode_t>(hasGroup ? S_ISUID : S_ISUID | S_ISGID);
        if (!hasGroup) {
            // Another group gets no more than everybody has.
            mode &= ~static_cast<mode_t>(S_IRWXG) | (mode & S_IRWXO) << 3;
        }
    }
    if (!hasOtherOwner && mode == (mine.st_mode & 07777U)) {
        return kError_None;
    }
    return ::fchmod(inFile, mode) == 0 ? kError_None : ErrorFromErrno(errno);
}

ErrorCode SyncFile(int inFile) {
    return Uninterrupted([&] { return ::fsync(inFile); }) == 0 ? kError_None
                                                               : ErrorFromErrno(errno);
}

} // namespace brindle::platform
