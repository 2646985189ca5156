#pragma once

#include <brindle/utility/TextTypes.h>

#include "platform/Errors.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/SystemPath.h"

#include <string>

namespace brindle::platform {

/// Where a file stands after every link is followed: its name in an open directory.
struct FilePlace {
    FileDescriptor directory;
    std::string name;

    SystemPath Path() const { return SystemPath(directory.Get(), name); }
};

/// The file itself need not be there, and a link may dangle. Error 5 for what ends with no
/// name, and for a link of somebody else in a directory where everybody may make one.
Result<FilePlace> FollowLinks(UTF16String const& inPath);

/// Puts a file over whatever stands in the place, in one step.
ErrorCode RenameInto(FilePlace const& inPlace, int inDirectory, char const* inName);

/// Makes what was renamed last. A directory that cannot be synced, or not by us, keeps its own time
/// for that, which is no failure.
ErrorCode SyncDirectory(FilePlace const& inPlace);

} // namespace brindle::platform
