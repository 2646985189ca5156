#include "platform/Files.h"
#include "proplist/src/Readable.h"

#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/SafeSave.h>
#include <brindle/proplist/PropListUtils.h>

namespace brindle::proplist {

void utils::SavePropList(filesupport::File& ioFile, PropList const& inList) {
    UTF8String document;
    WritePropList(document, inList);
    if (!impl::IsReadable(document) || impl::HoldsCutText(inList)) {
        throw filesupport::file_exception(ioFile);
    }

    filesupport::SafeSave save(ioFile);
    // While it is written, others may read only what is sure to have no old version.
    bool const isFirst =
        platform::Inspect(ioFile.Helper().FullNativePath()).error == platform::kError_FileNotFound;
    auto const readers = isFirst ? platform::Readers::kAnybody : platform::Readers::kOwner;
    if (platform::WriteNewFile(save.GetTempFile().Helper().FullNativePath(), readers,
                               document.data(), document.size()) != platform::kError_None) {
        throw filesupport::file_exception(ioFile);
    }
    save.Commit();
}

void utils::SavePropList(UTF16String const& inPath, PropList const& inList) {
    filesupport::File file(inPath);
    SavePropList(file, inList);
}

} // namespace brindle::proplist
