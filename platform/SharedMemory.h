#pragma once

#include "platform/Errors.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace brindle::platform {

constexpr std::size_t kMostSharedNameLength = 255;

/// Holds memory that has a name among the processes of one user. The memory exists as long as an
/// object of this class or a view holds it, in any process; a child of a fork holds what its parent
/// held, a program started by `exec` holds nothing. The system counts the holders, so a process
/// that is killed releases what it held.
class SharedMemory {
public:
    /// For the functions below: the system's number of the memory, and what keeps it alive.
    SharedMemory(int inSegment, std::shared_ptr<void> inHold) noexcept
        : mSegment(inSegment), mHold(std::move(inHold)) {}

    /// A view of the whole memory, which is unmapped with the last pointer to it, also after this
    /// object. Writing to a read-only view is a memory fault. Error: 8 no address space.
    Result<std::shared_ptr<void>> Map(bool inWritable) const;

private:
    int const mSegment;
    std::shared_ptr<void> const mHold;
};

/// Makes new memory of this many bytes, all zero, under a name that no memory has. Pages are taken
/// from the system when they are first accessed; how far it promises them at the creation is the
/// system's business. What a creation leaves behind that is killed is removed by the user's next
/// creation. Waits for other processes that create or open at this moment. Errors: 183 the name is
/// taken; 123 the name is empty or contains a NUL; 206 the name is longer than 255 bytes; 87 no
/// bytes; 8, 112 the system refuses so much memory or has no room for the name; 5 the file with the
/// user's names is not the user's.
[[nodiscard]] Result<std::shared_ptr<SharedMemory>> CreateSharedMemory(std::string const& inName,
                                                                       std::uint32_t inByteCount);

/// Opens the memory of this name. Errors: 2 no memory has the name; 123, 206, 8, 5 as above.
[[nodiscard]] Result<std::shared_ptr<SharedMemory>> OpenSharedMemory(std::string const& inName);

} // namespace brindle::platform
