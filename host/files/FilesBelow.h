#pragma once

#include "host/commandline/Diagnostics.h"

#include <brindle/filesupport/Dir.h>

#include <string>
#include <vector>

namespace brindle::host {

/// Native paths.
struct FoundFiles {
    std::vector<std::string> files;
    std::vector<std::string> unreadableDirs;
};

/// Appends all files below the directory, as the walk meets them, and the directories that cannot
/// be read, which are reported too. Links to files are files, links to directories are not entered.
void FindFilesBelow(filesupport::Dir const& inDir, FoundFiles& ioFound, Diagnostics& ioDiagnostics);

} // namespace brindle::host
