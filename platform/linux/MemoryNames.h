#pragma once

#include "platform/Errors.h"
#include "platform/SharedMemory.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/LockedFile.h"

#include <cstdint>
#include <string>
#include <vector>

namespace brindle::platform {

enum class Lock { kShared, kExclusive };

/// What is known of a name: which segment it stands for, and enough to tell whether that still is
/// the same one.
struct MemoryName {
    static constexpr std::int32_t kNoSegment = -1;

    std::int32_t segment = kNoSegment;
    /// While there is no segment: the key under which one may have been left half made, or 0.
    std::int32_t key = 0;
    std::int64_t changed = 0; ///< when the segment was made, in seconds
    std::uint32_t size = 0;
    std::uint32_t nameLength = 0;
    char name[kMostSharedNameLength + 1] = {};

    bool Is(std::string const& inName) const noexcept {
        return inName.compare(0, inName.size(), name, nameLength) == 0;
    }
};

/// The names of this user's shared memory: a file of records in memory, under a lock for as long as
/// the object lives. A record outlives its segment until another name takes its place.
class MemoryNames {
public:
    /// Waits for the lock; with an exclusive one the file is made if there is none. Errors: 2 there
    /// is none; 5 what stands in its place is not a file of this user, or has other names; 112.
    static Result<MemoryNames> Open(Lock inLock);
    MemoryNames() noexcept = default;
    MemoryNames(MemoryNames&&) noexcept = default;
    MemoryNames& operator=(MemoryNames&&) noexcept = default;
    ~MemoryNames();

    /// All records. What a killed writer left unfinished is a record without a segment, or none.
    Result<std::vector<MemoryName>> Read() const;

    /// Writes a record, at most one behind the last. A kill meanwhile leaves it without a segment.
    ErrorCode Write(std::size_t inIndex, MemoryName const& inRecord) const;

private:
    explicit MemoryNames(FileDescriptor inFile) noexcept : mFile(std::move(inFile)) {}

    FileDescriptor mFile;
};

} // namespace brindle::platform
