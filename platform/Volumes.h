#pragma once

#include <brindle/utility/TextTypes.h>

#include "platform/Errors.h"

#include <cstdint>
#include <string>
#include <vector>

namespace brindle::platform {

enum class VolumeKind { kFixed, kRemote };

struct Volume {
    char letter = 0; ///< `A` to `Z`
    VolumeKind kind = VolumeKind::kFixed;
};

/// Maps a drive letter, any but `C`, to a directory; an empty path removes the mapping. Any thread
/// may call. Errors: 87 not a letter, or `C`; those of inspecting the directory; 267 not a
/// directory.
ErrorCode MapVolume(char inLetter, UTF16String const& inDirectory);

/// `C` and the mapped letters, in alphabetical order. Any thread may call.
std::vector<Volume> Volumes();

struct VolumeSpace {
    std::uint64_t available = 0; ///< bytes that this user may still write
    std::uint64_t total = 0;     ///< bytes that the volume holds altogether
};

/// The space of the volume that holds a file or directory. Errors: 2, 3, 5, 1921.
Result<VolumeSpace> SpaceOf(UTF16String const& inPath);

/// What kind of file system holds a directory, given in the system's form; `kFixed` where the
/// system cannot tell.
VolumeKind KindOfVolume(std::string const& inNativeDirectory);

} // namespace brindle::platform
