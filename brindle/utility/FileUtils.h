#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

#include <cstdint>
#include <vector>

/// Plain functions on paths and whole files:
///
///     auto path = FileUtils::UniqueFileName(dir, u"take"_utf16, u".txt"_utf16);
///     FileUtils::SimpleWriteStringToFile(path, "one\n"_utf8);
///
/// A path may have any length; both "\" and "/" separate names. The functions share no state, and
/// any thread may call. A failure of the system is silent unless the result reports it.
namespace brindle::utility::FileUtils {

/// Turns a bare name, without a directory, into one that every file system accepts: replaces the
/// characters
/// `\/:*?"<>|` and the units 1 to 31, a "." or space at the end and a "." at the beginning, and
/// changes the reserved names of devices (`con` becomes "con_", `CON.txt` becomes "CO_.txt"). If
/// the replacement is itself such a character, a "." or a space, "-" is used. Returns whether the
/// name changed.
BRN_API bool ReplaceIllegalFileNameCharacters(UTF16String& ioName, std::uint16_t inReplacement);

/// Gives the part of the path before the last separator, without a trailing "\"; a path without a
/// separator is its own parent. Returns false, and leaves `outParent` alone, if that part is empty.
BRN_API bool GetParentPath(UTF16String const& inPath, UTF16String& outParent);

/// Joins a directory and a name by a backslash, unless the directory ends in one or is empty.
BRN_API void BuildPathSpec(UTF16String const& inDirectory, UTF16String const& inName,
                           UTF16String& outPath);

/// Creates an empty file, or empties an existing one that nobody has open.
BRN_API void CreateNewFile(UTF16String const& inPath);

/// Removes a file, or a link and not what it points to; true on success.
BRN_API bool RemoveFile(UTF16String const& inPath);

/// True if there is anything at the path, also a directory; a link counts as what it points to.
BRN_API bool FileExists(UTF16String const& inPath);

/// Replaces the file by the text in one step: after a failure, a crash or with a full disk the old
/// file is still there. The text is on the disk when this returns.
BRN_API void SimpleWriteStringToFile(UTF16String const& inPath, UTF8String const& inText);

/// Appends the text to the file, which is created if it does not exist; all of it or nothing.
BRN_API void SimpleAppendStringToFile(UTF16String const& inPath, UTF8String const& inText);

/// Appends the full paths of the files in a directory, in the system's order; but not directories,
/// hidden files (names that begin with a dot), FIFOs, sockets and devices.
BRN_API void ContainedFiles(UTF16String const& inDirectory, std::vector<UTF16String>& ioPaths);

/// The first free path of the form directory, "\", base, number, extension, with the number 1, 2, 3
/// and so on; a dangling link also takes a name. The extension includes its dot.
BRN_API UTF16String UniqueFileName(UTF16String const& inDirectory, UTF16String const& inBase,
                                   UTF16String const& inExtension);

/// Replaces the path of a shortcut by that of its target. Returns 0, or on failure, also if the
/// target does not exist, the negative number 0x80070000 plus the error of the system; both
/// arguments are left alone then.
BRN_API std::int32_t ResolveIT(UTF16String& ioPath, bool& outIsDirectory);

/// Writes a shortcut, replacing an existing file. Returns the same numbers as `ResolveIT`.
BRN_API std::int32_t CreateLink(UTF16String const& inTarget, UTF16String const& inLinkPath,
                                UTF16String const& inDescription);
/// The same without a description.
inline std::int32_t CreateLink(UTF16String const& inTarget, UTF16String const& inLinkPath) {
    return CreateLink(inTarget, inLinkPath, {});
}

} // namespace brindle::utility::FileUtils
