#include "platform/SharedMemory.h"

#include "platform/linux/ErrnoTable.h"
#include "platform/linux/MemoryNames.h"

#include <sys/ipc.h>
#include <sys/mman.h>
#include <sys/random.h>
#include <sys/shm.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <vector>

// Shared memory is a System V segment that its creator attaches and then marks for removal. From
// then on the kernel removes it with its last attachment, however that ends; until then any process
// that knows its number can attach it. The user's file of names maps names to numbers.
// docs/concurrency/shared-memory.md discusses the races.

namespace brindle::platform {

namespace {

constexpr int kOwnerOnly = 0600;

struct Detach {
    void operator()(void* inAddress) const noexcept { ::shmdt(inAddress); }
};
using Attachment = std::unique_ptr<void, Detach>;

Result<Attachment> Attach(int inSegment, int inFlags) noexcept {
    void* const address = ::shmat(inSegment, nullptr, inFlags);
    if (address == reinterpret_cast<void*>(-1)) {
        return {{}, ErrorFromErrno(errno)};
    }
    return {Attachment(address), kError_None};
}

/// Attaches a segment only to keep it alive, in as little address space as possible.
Result<Attachment> Hold(int inSegment, std::size_t inByteCount) noexcept {
    auto hold = Attach(inSegment, SHM_RDONLY);
    auto const page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    if (hold && inByteCount > page) {
        ::munmap(static_cast<char*>(hold.value.get()) + page, inByteCount - page);
    }
    return hold;
}

/// Whether the segment of a record exists. The kernel reuses numbers, so the segment must also have
/// the recorded time and size.
bool Exists(MemoryName const& inRecord) noexcept {
    shmid_ds status{};
    return inRecord.segment != MemoryName::kNoSegment &&
           ::shmctl(inRecord.segment, IPC_STAT, &status) == 0 &&
           (status.shm_perm.mode & SHM_DEST) != 0 && status.shm_perm.cuid == ::geteuid() &&
           status.shm_ctime == inRecord.changed && status.shm_segsz == inRecord.size;
}

/// Removes what a creator that was killed may have left, and clears the record.
ErrorCode RemoveUnfinished(MemoryNames const& inNames, std::size_t inIndex, MemoryName& ioRecord) {
    int const segment = ::shmget(ioRecord.key, 0, 0);
    shmid_ds status{};
    if (segment >= 0 && ::shmctl(segment, IPC_STAT, &status) == 0 &&
        status.shm_perm.cuid == ::geteuid() && status.shm_segsz == ioRecord.size) {
        ::shmctl(segment, IPC_RMID, nullptr);
    }
    ioRecord = MemoryName();
    return inNames.Write(inIndex, ioRecord);
}

/// Finds a record whose memory no longer exists. To ask for each record would cost a call for each
/// name that is in use, so this looks at a few, beginning anywhere: if many records are free it
/// finds one, and otherwise the file may grow.
std::size_t FindFree(std::vector<MemoryName> const& inRecords) {
    constexpr std::size_t kMostLooks = 8;
    std::size_t const count = inRecords.size();
    std::uint32_t start = 0;
    if (::getrandom(&start, sizeof(start), 0) != sizeof(start)) {
        start = 0; // any place will do
    }
    for (std::size_t i = 0; i < std::min(count, kMostLooks); ++i) {
        std::size_t const index = (start + i) % count;
        if (!Exists(inRecords[index])) {
            return index;
        }
    }
    return count;
}

/// Finds the record for new memory of this name: the one that had the name before, a free one, or
/// the place behind the last. Error 183: memory of this name exists.
Result<std::size_t> FindPlace(MemoryNames const& inNames, std::string const& inName) {
    auto records = inNames.Read();
    if (!records) {
        return {{}, records.error};
    }
    std::optional<std::size_t> own;
    for (std::size_t i = 0; i < records.value.size(); ++i) {
        MemoryName& record = records.value[i];
        if (record.segment == MemoryName::kNoSegment && record.key != 0) {
            if (ErrorCode const error = RemoveUnfinished(inNames, i, record);
                error != kError_None) {
                return {{}, error};
            }
        }
        if (record.Is(inName)) {
            if (Exists(record)) {
                return {{}, kError_AlreadyExists};
            }
            own = i;
        }
    }
    return {own.has_value() ? *own : FindFree(records.value), kError_None};
}

/// Makes a segment under a random key, which is written to its record first.
Result<int> MakeSegment(MemoryNames const& inNames, std::size_t inIndex, MemoryName& ioRecord) {
    for (;;) {
        if (::getrandom(&ioRecord.key, sizeof(ioRecord.key), 0) != sizeof(ioRecord.key)) {
            return {{}, kError_GeneralFailure};
        }
        if (ioRecord.key == IPC_PRIVATE) {
            continue;
        }
        if (ErrorCode const error = inNames.Write(inIndex, ioRecord); error != kError_None) {
            return {{}, error};
        }
        int const segment =
            ::shmget(ioRecord.key, ioRecord.size, IPC_CREAT | IPC_EXCL | kOwnerOnly);
        if (segment >= 0) {
            return {segment, kError_None};
        }
        // The key may belong to another program's segment.
        if (errno != EEXIST) {
            return {{}, ErrorFromErrno(errno)};
        }
    }
}

/// Makes a segment that vanishes with its last holder, and writes its number to the record.
Result<std::shared_ptr<SharedMemory>> Make(MemoryNames const& inNames, std::size_t inIndex,
                                           MemoryName& ioRecord) {
    auto const segment = MakeSegment(inNames, inIndex, ioRecord);
    if (!segment) {
        return {{}, segment.error};
    }
    auto hold = Hold(segment.value, ioRecord.size);
    // If it could not be attached, this removes it at once.
    shmid_ds status{};
    if (::shmctl(segment.value, IPC_RMID, nullptr) != 0 ||
        ::shmctl(segment.value, IPC_STAT, &status) != 0 || !hold) {
        return {{}, hold ? ErrorFromErrno(errno) : hold.error};
    }
    auto memory = std::make_shared<SharedMemory>(segment.value, std::move(hold.value));
    ioRecord.segment = segment.value;
    ioRecord.changed = status.shm_ctime;
    if (ErrorCode const error = inNames.Write(inIndex, ioRecord); error != kError_None) {
        return {{}, error};
    }
    return {std::move(memory), kError_None};
}

ErrorCode CheckName(std::string const& inName) noexcept {
    if (inName.empty() || inName.find('\0') != std::string::npos) {
        return kError_InvalidName;
    }
    return inName.size() > kMostSharedNameLength ? kError_NameTooLong : kError_None;
}

} // namespace

Result<std::shared_ptr<void>> SharedMemory::Map(bool inWritable) const {
    auto view = Attach(mSegment, inWritable ? 0 : SHM_RDONLY);
    return {std::move(view.value), view.error};
}

Result<std::shared_ptr<SharedMemory>> CreateSharedMemory(std::string const& inName,
                                                         std::uint32_t inByteCount) {
    if (ErrorCode const error = CheckName(inName); error != kError_None) {
        return {{}, error};
    }
    if (inByteCount == 0) {
        return {{}, kError_InvalidParameter};
    }
    auto const names = MemoryNames::Open(Lock::kExclusive);
    if (!names) {
        return {{}, names.error};
    }
    auto const place = FindPlace(names.value, inName);
    if (!place) {
        return {{}, place.error};
    }
    MemoryName record;
    record.size = inByteCount;
    record.nameLength = static_cast<std::uint32_t>(inName.size());
    std::memcpy(record.name, inName.data(), inName.size());
    return Make(names.value, place.value, record);
}

Result<std::shared_ptr<SharedMemory>> OpenSharedMemory(std::string const& inName) {
    if (ErrorCode const error = CheckName(inName); error != kError_None) {
        return {{}, error};
    }
    auto const names = MemoryNames::Open(Lock::kShared);
    if (!names) {
        return {{}, names.error};
    }
    auto const records = names.value.Read();
    if (!records) {
        return {{}, records.error};
    }
    for (MemoryName const& record : records.value) {
        if (record.Is(inName) && Exists(record)) {
            auto hold = Hold(record.segment, record.size);
            // The segment may have vanished since the first look. What is attached now cannot.
            if (!Exists(record)) {
                break;
            }
            if (!hold) {
                return {{}, hold.error};
            }
            return {std::make_shared<SharedMemory>(record.segment, std::move(hold.value)),
                    kError_None};
        }
    }
    return {{}, kError_FileNotFound};
}

} // namespace brindle::platform
