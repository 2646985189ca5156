#include "platform/linux/MemoryNames.h"

#include "platform/linux/ErrnoTable.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <type_traits>

namespace brindle::platform {

namespace {

static_assert(std::is_trivially_copyable_v<MemoryName> &&
              std::has_unique_object_representations_v<MemoryName>);

/// The directory of the file of names: where files in memory belong or, if this user can make none
/// there, where temporary files do. All processes of a user on one machine find the same.
char const* Directory() noexcept {
    static constexpr char kMemory[] = "/dev/shm";
    return ::faccessat(AT_FDCWD, kMemory, W_OK | X_OK, AT_EACCESS) == 0 ? kMemory : "/tmp";
}

/// Others can write to the directory, so the file may be one of theirs, or a link that they made to
/// another file of this user.
bool IsOwn(struct stat const& inFile) noexcept {
    return S_ISREG(inFile.st_mode) && inFile.st_uid == ::geteuid() && inFile.st_nlink == 1;
}

} // namespace

Result<MemoryNames> MemoryNames::Open(Lock inLock) {
    constexpr mode_t kOwnerOnly = 0600;
    std::string const path = Directory() + ("/brindle-memory-" + std::to_string(::geteuid()));
    int const flags = O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    int const creation = inLock == Lock::kExclusive ? O_CREAT : 0;
    int const operation = inLock == Lock::kExclusive ? LOCK_EX : LOCK_SH;
    for (;;) {
        FileDescriptor file(
            Uninterrupted([&] { return ::open(path.c_str(), flags | creation, kOwnerOnly); }));
        if (!file.IsOpen()) {
            bool const isMissing = errno == ENOENT && creation == 0;
            bool const isFull = errno == ENOSPC || errno == EDQUOT;
            return {{}, isMissing || isFull ? ErrorFromErrno(errno) : kError_AccessDenied};
        }
        if (Uninterrupted([&] { return ::flock(file.Get(), operation); }) != 0) {
            return {{}, ErrorFromErrno(errno)};
        }
        MemoryNames names(std::move(file));
        struct stat status {};
        if (::fstat(names.mFile.Get(), &status) != 0) {
            return {{}, ErrorFromErrno(errno)};
        }
        if (IsOwn(status)) {
            return {std::move(names), kError_None};
        }
        if (status.st_nlink != 0) {
            return {{}, kError_AccessDenied};
        }
        // The file was removed while this thread waited for the lock.
    }
}

MemoryNames::~MemoryNames() {
    // To close the descriptor is not enough: a child that another thread has forked meanwhile has
    // it too.
    if (mFile.IsOpen()) {
        ::flock(mFile.Get(), LOCK_UN);
    }
}

Result<std::vector<MemoryName>> MemoryNames::Read() const {
    struct stat status {};
    if (::fstat(mFile.Get(), &status) != 0) {
        return {{}, ErrorFromErrno(errno)};
    }
    std::vector<MemoryName> records(static_cast<std::size_t>(status.st_size) / sizeof(MemoryName));
    std::size_t const wanted = records.size() * sizeof(MemoryName);
    auto* const bytes = reinterpret_cast<char*>(records.data());
    for (std::size_t got = 0; got < wanted;) {
        auto const count = Uninterrupted([&] {
            return ::pread(mFile.Get(), bytes + got, wanted - got, static_cast<off_t>(got));
        });
        if (count <= 0) {
            return {{}, count < 0 ? ErrorFromErrno(errno) : kError_EndOfFile};
        }
        got += static_cast<std::size_t>(count);
    }
    for (MemoryName& record : records) {
        record.nameLength = std::min<std::uint32_t>(record.nameLength, kMostSharedNameLength);
    }
    return {std::move(records), kError_None};
}

ErrorCode MemoryNames::Write(std::size_t inIndex, MemoryName const& inRecord) const {
    // The number is written last, so that half a record stands for no segment.
    MemoryName record = inRecord;
    record.segment = MemoryName::kNoSegment;
    std::uint64_t const offset = inIndex * sizeof(MemoryName);
    std::size_t written = 0;
    ErrorCode const error = WriteFully(mFile.Get(), &record, sizeof(record), offset, written);
    if (error != kError_None || inRecord.segment == MemoryName::kNoSegment) {
        return error;
    }
    return WriteFully(mFile.Get(), &inRecord.segment, sizeof(inRecord.segment), offset, written);
}

} // namespace brindle::platform
