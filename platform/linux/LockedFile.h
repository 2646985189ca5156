#pragma once

#include "platform/Errors.h"
#include "platform/Files.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/FileLock.h"
#include "platform/linux/FilePlace.h"
#include "platform/linux/SystemPath.h"

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <limits>

namespace brindle::platform {

constexpr mode_t kMode_Anybody = 0666; ///< further restricted by the process's mask
constexpr mode_t kMode_OwnerOnly = 0600;

/// The furthest position of an open file.
constexpr std::uint64_t kMostPosition = std::numeric_limits<std::int64_t>::max();

bool IsSameFile(struct stat const& inLHS, struct stat const& inRHS) noexcept;

/// Opens a regular file and locks it; the lock ends with the descriptor. Anything but a regular
/// file is refused (5) without being opened. `inFlags` are those of `open`; with `O_CREAT` a
/// missing file is created. A descriptor for writing refers to the file that the path names once it
/// is locked, not to one that was replaced meanwhile.
Result<FileDescriptor> OpenLocked(SystemPath const& inPath, int inFlags, FileLock inLock,
                                  mode_t inMode = kMode_Anybody);

/// Makes sure that what stands in the place may be replaced: a regular file that may be written and
/// that nobody writes in place, or nothing. Until the descriptor is closed nobody else appends to
/// the file, replaces it or begins to write it; there is no descriptor if nothing stands there.
Result<FileDescriptor> GuardOld(FilePlace const& inPlace);

/// Writes all the bytes at the offset; `outWritten` is how many were written, also on failure.
ErrorCode WriteFully(int inDescriptor, void const* inBytes, std::size_t inCount,
                     std::uint64_t inOffset, std::size_t& outWritten);

Result<std::uint64_t> SizeOf(int inDescriptor);

} // namespace brindle::platform
