#pragma once

#include "host/commandline/Diagnostics.h"

#include <brindle/filesupport/Dir.h>

#include <string>
#include <vector>

namespace brindle::host {

/// The reason to report for a directory that cannot be read.
constexpr char const* kCannotReadDirectory = "the directory cannot be read";

/// What a walk found, as native paths.
struct FoundFiles {
    std::vector<std::string> files;
    std::vector<std::string> unreadableDirs;
};

/// Appends all files below the directory and the directories that cannot be read, in the order of
/// the walk. A link to a file counts as a file; a link to a directory is not entered.
void FindFilesBelow(filesupport::Dir const& inDir, FoundFiles& ioFound, Diagnostics& ioDiagnostics);

} // namespace brindle::host
