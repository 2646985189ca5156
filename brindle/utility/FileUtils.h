#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

#include <cstdint>
#include <vector>

/// Plain functions on paths and whole files. A path may have any length; "\" and "/" separate its
/// names. The functions share no state, and any thread may call. Unless a result tells, a failure
/// of the system is silent.
namespace brindle::utility::FileUtils {

/// Makes a bare name, without a directory, one that every file system takes: replaces the
/// characters `\/:*?"<>|` and the units 1 to 31, a "." or space at the end and a "." at the
/// beginning, and alters the reserved names of devices (`con` becomes "con_", `CON.txt` becomes
/// "CO_.txt"). A replacement that is itself such a character, a "." or a space counts as "-". True
/// if the name changed.
BRN_API bool ReplaceIllegalFileNameCharacters(UTF16String& ioName, std::uint16_t inReplacement);

/// Gives what stands before the last separator, without a "\" at its end; a path without a
/// separator is its own parent. False, with `outParent` left alone, if nothing stands there.
BRN_API bool GetParentPath(UTF16String const& inPath, UTF16String& outParent);

/// Joins a directory and a name by a backslash, unless the directory ends in one or is empty.
BRN_API void BuildPathSpec(UTF16String const& inDirectory, UTF16String const& inName,
                           UTF16String& outPath);

/// Makes an empty file, or empties an existing one that nobody has open.
BRN_API void CreateNewFile(UTF16String const& inPath);

/// Removes a file, or a link and not what it points to; true on success.
BRN_API bool RemoveFile(UTF16String const& inPath);

/// True for whatever stands at the path, a directory too; a link counts as what it points to.
BRN_API bool FileExists(UTF16String const& inPath);

/// Replaces the file with the text, in one step: a failure, a crash or a full disk leaves the old
/// file. The text is on the disk when this returns.
BRN_API void SimpleWriteStringToFile(UTF16String const& inPath, UTF8String const& inText);

/// Adds the text at the end of the file, which is made if it is missing; all of it or nothing.
BRN_API void SimpleAppendStringToFile(UTF16String const& inPath, UTF8String const& inText);

/// Appends the full paths of the files of a directory, in the system's order; without directories,
/// hidden files (their names begin with a dot), FIFOs, sockets and devices.
BRN_API void ContainedFiles(UTF16String const& inDirectory, std::vector<UTF16String>& ioPaths);

/// The first path of the form directory, "\", base, number, extension, with the number 1, 2, 3 and
/// so on, at which nothing stands, not even a broken link. The extension brings its own dot.
BRN_API UTF16String UniqueFileName(UTF16String const& inDirectory, UTF16String const& inBase,
                                   UTF16String const& inExtension);

/// Replaces the path of a shortcut by that of its target. The result is 0, or negative on failure,
/// also when the target is gone: 0x80070000 plus the error of the system. Both arguments are left
/// alone then.
BRN_API std::int32_t ResolveIT(UTF16String& ioPath, bool& outIsDirectory);

/// Writes a shortcut, in place of an old file. The result is as for `ResolveIT`.
BRN_API std::int32_t CreateLink(UTF16String const& inTarget, UTF16String const& inLinkPath,
                                UTF16String const& inDescription);

} // namespace brindle::utility::FileUtils
