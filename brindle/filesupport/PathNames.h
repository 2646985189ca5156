#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/File.h>
#include <brindle/utility/TextTypes.h>

namespace brindle::filesupport {

/// Orders two file names as the user's locale sorts them, ignoring case, the kind of kana and the
/// width of characters: -1, 0 or 1, or -2 if the system cannot tell. A NUL ends a name.
BRN_API int CompareFileNames(UTF16String const& inLHS, UTF16String const& inRHS);

/// False for an empty path, for one that begins with a separator, and for one that begins with a
/// drive.
BRN_API bool IsNormalizedRelativePath(UTF16String const& inPath);

/// The path of `inTarget` as seen from the directory of `inBase`, with "/" between names; empty if
/// the two have no directory in common.
BRN_API UTF16String MakeNormalizedRelativePath(File const& inTarget, File const& inBase);

/// The file that the relative path `inPath`, with "/" between names, leads to from the directory of
/// `inBase`; a path that is not relative is used as it is. A path that ends in "/" names no file,
/// and the result is empty.
BRN_API File MakeFileFromPath(UTF16String const& inPath, File const& inBase);

/// The path from a directory to a file or directory, with "/" between names: "." for the directory
/// itself, and empty if the two have no directory in common. Like `MakeNormalizedRelativePath`, it
/// compares the paths alone and does not look at the disk.
BRN_API UTF16String RelativePath(Dir const& inFrom, File const& inTo);
BRN_API UTF16String RelativePath(Dir const& inFrom, Dir const& inTo);

/// The file with another extension, such as ".wav", instead of its own or where it had none. An
/// empty extension takes away the present one; a missing "." is added.
BRN_API File WithExtension(File const& inFile, UTF16String const& inExtension);

} // namespace brindle::filesupport
