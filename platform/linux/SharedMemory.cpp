#include "platform/SharedMemory.h"

#include "platform/linux/ErrnoTable.h"
#include "platform/linux/MemoryNames.h"

#include <sys/ipc.h>
#include <sys/mman.h>
#include <sys/random.h>
#include <sys/shm.h>

#include <cstring>

// A piece of memory is a segment that was marked for removal as soon as its maker held it: from
// then on the kernel removes it with its last attachment, however that ends, and until then
// whoever knows its number can attach. The user's file of names tells the numbers.

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

/// Attaches to a segment only to keep it, in as little address space as can be.
Result<Attachment> Hold(int inSegment, std::size_t inByteCount) noexcept {
    auto hold = Attach(inSegment, SHM_RDONLY);
    auto const page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    if (hold && inByteCount > page) {
        ::munmap(static_cast<char*>(hold.value.get()) + page, inByteCount - page);
    }
    return hold;
}

/// Whether the segment of a record exists. Numbers are given again in the end, so it has to be the
/// one that was recorded.
bool Exists(MemoryName const& inRecord) noexcept {
    shmid_ds status{};
    return inRecord.segment != MemoryName::kNoSegment &&
           ::shmctl(inRecord.segment, IPC_STAT, &status) == 0 &&
           (status.shm_perm.mode & SHM_DEST) != 0 && status.shm_perm.cuid == ::geteuid() &&
           status.shm_ctime == inRecord.changed && status.shm_segsz == inRecord.size;
}

/// Removes what a maker who was killed may have left, and says so in the record.
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

/// Finds the record that new memory of this name takes: its own, one that stands for nothing, or
/// the one behind the last. Error 183: memory of this name exists.
Result<std::size_t> FindPlace(MemoryNames const& inNames, std::string const& inName) {
    auto records = inNames.Read();
    if (!records) {
        return {{}, records.error};
    }
    std::size_t own = records.value.size();
    std::size_t free = own;
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
        } else if (free == records.value.size() && !Exists(record)) {
            free = i;
        }
    }
    return {own != records.value.size() ? own : free, kError_None};
}

/// Makes a segment under a key that its record tells before it exists.
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
        // The key may be that of another program's segment.
        if (errno != EEXIST) {
            return {{}, ErrorFromErrno(errno)};
        }
    }
}

/// Makes a segment that goes with its last holder, and tells the record of it.
Result<std::shared_ptr<SharedMemory>> Make(MemoryNames const& inNames, std::size_t inIndex,
                                           MemoryName& ioRecord) {
    auto const segment = MakeSegment(inNames, inIndex, ioRecord);
    if (!segment) {
        return {{}, segment.error};
    }
    auto hold = Hold(segment.value, ioRecord.size);
    // Without a holder this removes it at once, as it should.
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
            // It may have gone since we looked; what we hold stays what it is.
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
