#pragma once

#include "platform/Errors.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace brindle::platform {

constexpr std::size_t kMostSharedNameLength = 255;

/// Holds a piece of memory that has a name among the processes of one user. It exists for as long
/// as something holds it: such an object or a view, here or in another process, and after a fork in
/// the child too. A program that `exec` starts holds nothing. The system itself counts the holders,
/// so a killed process has let go.
class SharedMemory {
public:
    /// By the system's number of the memory, with something that keeps it: for the functions below.
    SharedMemory(int inSegment, std::shared_ptr<void> inHold) noexcept
        : mSegment(inSegment), mHold(std::move(inHold)) {}

    /// A view of the whole memory, unmapped when the last pointer to it goes, which may be after
    /// this object. Writing to a view that is not writable is a memory fault; no other access is,
    /// whatever the state of the system. Error: 8 no address space.
    Result<std::shared_ptr<void>> Map(bool inWritable) const;

private:
    int const mSegment;
    std::shared_ptr<void> const mHold;
};

/// Makes new memory of this many bytes, all zero, under a name that no memory has. Pages are taken
/// as they are touched, but the system has promised them all. A creation that is killed leaves
/// nothing behind, at the latest when the user next creates. May wait for another process that
/// creates or opens at this moment. Errors: 183 the name is taken; 123 no name, or one with a NUL;
/// 206 over 255 bytes; 87 no bytes; 8, 112 the system cannot promise so much or has no room for the
/// name; 5 the place where the user's names are kept is not the user's.
Result<std::shared_ptr<SharedMemory>> CreateSharedMemory(std::string const& inName,
                                                         std::uint32_t inByteCount);

/// Holds the memory of this name. Errors: 2 no memory has it; 123, 206, 8, 5 as above.
Result<std::shared_ptr<SharedMemory>> OpenSharedMemory(std::string const& inName);

} // namespace brindle::platform
