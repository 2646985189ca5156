#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/CopyBytes.h>
#include <brindle/filesupport/File.h>
#include <brindle/filesupport/PlatformByteStreams.h>
#include <brindle/utility/BoostFunction.h>

#include <cstdint>

namespace brindle::filesupport {

/// How `CopyFile` copies. By default it copies the content alone, as fast as the system can.
struct CopyOptions {
    /// Called after each block, and once for an empty file.
    CopyProgress progress;
    /// Asked before each block, and before the copy is put in place; true ends the copy.
    boost::function<bool()> isCancelled;
    /// The copy gets the time of the last write of the original.
    bool keepTimes = false;
    /// The copy gets the permissions of the original, without special bits. Otherwise it has those
    /// of the file that it replaces, and only a new file has those of the original.
    bool keepPermissions = false;
    /// Computes the CRC-32 of the content on the way.
    bool sum = false;
    /// With whom the original is shared meanwhile.
    FileSharing sharing = kShareWithReaders;
};

/// How a copy ended.
struct CopyResult {
    bool isComplete = false; ///< false if the copy was cancelled
    std::uint64_t size = 0;  ///< the bytes that were copied
    std::uint32_t crc = 0;   ///< of these bytes, if that was asked for
};

/// Compares all fields.
constexpr bool operator==(CopyResult const& inLHS, CopyResult const& inRHS) noexcept {
    return inLHS.isComplete == inRHS.isComplete && inLHS.size == inRHS.size &&
           inLHS.crc == inRHS.crc;
}

constexpr bool operator!=(CopyResult const& inLHS, CopyResult const& inRHS) noexcept {
    return !(inLHS == inRHS);
}

/// Copies a regular file, by a safe save: whatever happens, the target is the whole old file or the
/// whole copy, and the copy is on the disk when this returns.
///
///     CopyOptions options;
///     options.sum = options.keepTimes = true;
///     auto const copied = CopyFile(clip, File(backup, clip.GetName()), options);
///
/// The copy is one version of the original: if that is written or cut meanwhile, the copy fails
/// with `file_exception` for the original and the cause `kSharingViolation`. Links are followed on
/// both sides. A cancelled copy leaves the target alone.
///
/// Throws for the original `file_not_found_exception`, or `file_exception` if it cannot be read;
/// for the target `rename_file` if it may not be replaced, a class of `create_exception` if its
/// directory takes no new file, and `file_exception` if the copy cannot be written. What `progress`
/// and `isCancelled` throw ends the copy, too. Any thread may call.
BRN_API CopyResult CopyFile(File const& inFrom, File const& inTo,
                            CopyOptions const& inOptions = {});

} // namespace brindle::filesupport
