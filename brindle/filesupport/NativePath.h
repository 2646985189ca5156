#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/Dir.h>
#include <brindle/filesupport/File.h>

#include <string>

namespace brindle::filesupport {

/// @file
/// Conversion between the library's paths, with drives and backslashes, and those of the system.
/// Drive C: is the root of the file system, and "\\server\share" is below "/net". Names are
/// converted both ways without loss: a byte that is not part of valid UTF-8 becomes U+DC00 plus the
/// byte, and a backslash inside a name becomes U+F05C.

/// The file or directory at a path of the system, such as an argument of `main`.
BRN_API File FileFromNative(std::string const& inNativePath);
BRN_API Dir DirFromNative(std::string const& inNativePath);

/// The path as the system takes it; empty for a path that the system cannot have: on a drive that
/// is not mapped, or with a NUL.
BRN_API std::string NativePath(File const& inFile);
BRN_API std::string NativePath(Dir const& inDir);

/// Maps a drive, any letter except C, to a directory, and lists it as a volume; an empty `Dir`
/// removes the drive. Any thread may call. Throws `dir_exception` if there is no such directory, or
/// `inLetter` is not such a letter.
BRN_API void MapVolume(char inLetter, Dir const& inDir);

} // namespace brindle::filesupport
