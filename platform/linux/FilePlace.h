#pragma once

#include <brindle/utility/TextTypes.h>

#include "platform/Errors.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/SystemPath.h"

#include <string>

namespace brindle::platform {

/// Where a file is, or would be, after every link is followed: a name in an open directory.
struct FilePlace {
    FileDescriptor directory;
    std::string name;

    SystemPath Path() const { return SystemPath(directory.Get(), name); }
};

/// The place that a path names itself, be it that of a link. Error 5 for a path that does not end
/// in a name.
Result<FilePlace> PlaceOf(UTF16String const& inPath);

/// The file need not exist, and a link may dangle. Error 5 for a path that does not end in a name,
/// and for a link that somebody else planted in a directory where everybody may make one.
Result<FilePlace> FollowLinks(UTF16String const& inPath);

/// Puts a file over whatever stands in the place, in one step.
ErrorCode RenameInto(FilePlace const& inPlace, int inDirectory, char const* inName);

/// Makes the names in the directory durable. That a directory cannot be synced, or not by this
/// process, is not a failure: the system writes it in its own time.
ErrorCode SyncDirectory(FilePlace const& inPlace);

} // namespace brindle::platform
