#pragma once

#include "platform/Errors.h"
#include "platform/Files.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/FilePlace.h"
#include "platform/linux/SystemPath.h"

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <limits>

namespace brindle::platform {

constexpr mode_t kMode_Anybody = 0666; ///< as far as the process's mask lets them
constexpr mode_t kMode_OwnerOnly = 0600;

constexpr mode_t ModeFor(Readers inReaders) {
    return inReaders == Readers::kOwner ? kMode_OwnerOnly : kMode_Anybody;
}

enum class Lock { kShared, kExclusive };

/// Opens a regular file and locks it without waiting; the lock goes with the descriptor. Error 32
/// somebody else's lock is in the way. What is no regular file is refused (5) without being opened.
/// `inFlags` are those of `open`; with `O_CREAT` a missing file is made. Opened for writing, the
/// descriptor is the file that the path names, not one that was replaced meanwhile.
Result<FileDescriptor> OpenLocked(SystemPath const& inPath, int inFlags, Lock inLock,
                                  mode_t inMode = kMode_Anybody);

/// Writes all the bytes at the offset; `outWritten` tells how many arrived, also on failure.
ErrorCode WriteFully(int inDescriptor, void const* inBytes, std::size_t inCount,
                     std::uint64_t inOffset, std::size_t& outWritten);

/// The furthest position of an open file.
constexpr std::uint64_t kMostPosition = std::numeric_limits<std::int64_t>::max();

Result<std::uint64_t> SizeOf(int inDescriptor);

/// Makes sure that what stands in the place may be replaced: a regular file that may be written and
/// that nobody writes, or nothing. From then on nobody can begin to write it until the descriptor
/// is closed; there is none if nothing stands there. Any number of replacements may guard one file.
Result<FileDescriptor> GuardOld(FilePlace const& inPlace);

} // namespace brindle::platform
