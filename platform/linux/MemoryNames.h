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

/// A record of the file of names: which segment the name stands for, and enough to tell whether a
/// segment of that number is still the same one.
struct MemoryName {
    static constexpr std::int32_t kNoSegment = -1;

    std::int32_t segment = kNoSegment;
    /// If there is no segment: the key under which a creator that was killed may have left one, or
    /// 0.
    std::int32_t key = 0;
    std::int64_t changed = 0; ///< when the segment was made, in seconds of the system's clock
    std::uint32_t size = 0;
    std::uint32_t nameLength = 0;
    char name[kMostSharedNameLength + 1] = {};

    bool Is(std::string const& inName) const noexcept {
        return inName.compare(0, inName.size(), name, nameLength) == 0;
    }
};

/// The file with the names of this user's shared memory, in a file system in memory if there is
/// one. It is locked for as long as the object exists. A record stays after its segment has
/// vanished, until another name takes its place.
class MemoryNames {
public:
    /// Waits for the lock. With an exclusive lock, the file is made if it does not exist. Errors: 2
    /// it does not exist; 5 it is not a regular file of this user with this one name; 112.
    [[nodiscard]] static Result<MemoryNames> Open(Lock inLock);
    MemoryNames() noexcept = default;
    MemoryNames(MemoryNames&&) noexcept = default;
    MemoryNames& operator=(MemoryNames&&) noexcept = default;
    ~MemoryNames();

    /// All records. A write that was cut short by a kill is a record without a segment, or none.
    [[nodiscard]] Result<std::vector<MemoryName>> Read() const;

    /// Writes a record over another or behind the last. If the process is killed meanwhile, it is
    /// left without a segment.
    [[nodiscard]] ErrorCode Write(std::size_t inIndex, MemoryName const& inRecord) const;

private:
    explicit MemoryNames(FileDescriptor inFile) noexcept : mFile(std::move(inFile)) {}

    FileDescriptor mFile;
};

} // namespace brindle::platform
