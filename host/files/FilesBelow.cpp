#include "host/files/FilesBelow.h"

#include <brindle/filesupport/NativePath.h>
#include <brindle/filesupport/RecursiveFileIterator.h>

namespace brindle::host {

using namespace filesupport;

void FindFilesBelow(Dir const& inDir, FoundFiles& ioFound, Diagnostics& ioDiagnostics) {
    auto const noteUnreadable = [&ioFound](Dir const& inUnreadable) {
        ioFound.unreadableDirs.push_back(NativePath(inUnreadable));
    };
    RecursiveFileIterator const end;
    for (RecursiveFileIterator file(inDir, false, noteUnreadable); file != end; ++file) {
        ioFound.files.push_back(NativePath(*file));
        ioDiagnostics.ShowProgress("looking for files: " + std::to_string(ioFound.files.size()));
    }
}

} // namespace brindle::host
