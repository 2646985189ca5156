#pragma once

#include <brindle/utility/TextTypes.h>

#include "platform/Errors.h"

namespace brindle::platform {

/// True for the names that `FileReplacement` gives to its new files where they need one.
bool IsHiddenSaveName(UTF16String const& inName);

/// True for a file that `TemporaryFile` created and that has not taken its place. That a file is
/// one may get lost, as when somebody reads it; no other file ever counts as one.
bool HasSaveMark(UTF16String const& inPath);

/// Removes a file that a save of one of these two kinds left behind when its process was killed.
/// While it is not certain that the save has ended, the file stays. Errors: those of `DeleteFile`;
/// 13 the file is not of a save, or nobody has written anything into it yet; 32 its save is under
/// way; 50 the file system does not tell what processes on other machines have locked.
ErrorCode RemoveSaveRemains(UTF16String const& inPath);

} // namespace brindle::platform
