#pragma once

#include <brindle/utility/TextTypes.h>

#include "platform/Errors.h"

#include <cstddef>
#include <string>
#include <vector>

namespace brindle::platform {

/// Every path that the platform layer takes is library text: backslashes or slashes between names,
/// with or without a drive, with or without the prefix "\\?\" or "\\?\UNC\". Drive `C:` is the root
/// of the file system, a rooted path without a drive names the same place, and "\\server\share" is
/// below "/net". A path of any length works: what the kernel takes at most at once is no limit.
///
/// Names go both ways without loss: a byte that is not part of valid UTF-8 is U+DC00 plus the byte,
/// and a backslash inside a name is U+F05C. A name whose own text would read as one of these has
/// the bytes of that text escaped instead.

/// The system's form of a path. Errors: 3 a drive that is not mapped, 123 a NUL in the path.
Result<std::string> NativePath(UTF16String const& inPath);

/// The library's form of a path of the system. An absolute path comes out in the form of drive
/// `C:`; a relative one stays relative.
UTF16String PathFromNative(std::string const& inNativePath);

/// One name of a directory as told above; `outName` keeps its storage from call to call.
void NameFromNative(char const* inName, std::size_t inLength, UTF16String& outName);

enum class VolumeKind { kFixed, kRemote };

struct Volume {
    char letter = 0; ///< `A` to `Z`
    VolumeKind kind = VolumeKind::kFixed;
};

/// Maps a drive letter, any but `C`, to a directory; an empty path takes the letter back. Any
/// thread may call. Errors: 87 not a letter, or `C`; those of inspecting the directory; 267 no
/// directory.
ErrorCode MapVolume(char inLetter, UTF16String const& inDirectory);

/// `C` and the mapped letters, in alphabetical order.
std::vector<Volume> Volumes();

} // namespace brindle::platform
