#include "host/files/FilesBelow.h"

#include <brindle/filesupport/NativePath.h>
#include <brindle/filesupport/RecursiveFileIterator.h>

namespace brindle::host {

using namespace filesupport;

void FindFilesBelow(Dir const& inDir, FoundFiles& ioFound, Diagnostics& ioDiagnostics) {
    auto const reportUnreadable = [&](Dir const& inUnreadable) {
        ioFound.unreadableDirs.push_back(NativePath(inUnreadable));
        ioDiagnostics.Report(ioFound.unreadableDirs.back(), "the directory cannot be read");
    };
    RecursiveFileIterator const end;
    for (RecursiveFileIterator file(inDir, false, reportUnreadable); file != end; ++file) {
        ioFound.files.push_back(NativePath(*file));
        ioDiagnostics.ShowProgress("looking for files: " + std::to_string(ioFound.files.size()));
    }
}

} // namespace brindle::host
