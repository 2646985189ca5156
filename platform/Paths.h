#pragma once

#include <brindle/utility/TextTypes.h>

#include "platform/Errors.h"

#include <cstddef>
#include <string>

namespace brindle::platform {

/// Every path that the platform layer takes is library text: backslashes or slashes between names,
/// with or without a drive, with or without the prefix "\\?\" or "\\?\UNC\". Drive `C:` is the root
/// of the file system, a rooted path without a drive names the same place, and "\\server\share" is
/// below "/net". A path may have any length, also more than the kernel takes at once.
///
/// Names are converted both ways without loss: a byte that is not part of valid UTF-8 becomes
/// U+DC00 plus the byte, and a backslash inside a name becomes U+F05C. Where the name itself
/// contains the UTF-8 form of such a character, the bytes of that form are escaped instead.

/// The system's form of a path. Errors: 3 a drive that is not mapped, 123 a NUL in the path.
Result<std::string> NativePath(UTF16String const& inPath);

/// The same, with the current directory in front of a relative path. Further errors: 2, 5 the
/// current directory was removed, or may not be read.
Result<std::string> AbsoluteNativePath(UTF16String const& inPath);

/// The library's form of a path of the system. An absolute path comes out on drive `C:`; a relative
/// one stays relative.
UTF16String PathFromNative(std::string const& inNativePath);

/// The library's form of a single name. `outName` keeps its storage from call to call.
void NameFromNative(char const* inName, std::size_t inLength, UTF16String& outName);

} // namespace brindle::platform
