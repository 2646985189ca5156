#include <brindle/proplist/PropListUtils.h>

#include "platform/Files.h"
#include "proplist/src/document/Readable.h"

#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/SafeSave.h>

namespace brindle::proplist {

namespace {

/// A reader makes line feeds of carriage returns, but not of references to them.
void ReferToReturns(UTF8String& ioDocument) {
    auto at = ioDocument.find('\r');
    if (at == UTF8String::npos) {
        return;
    }
    constexpr std::uint8_t kReference[] = {'&', '#', '1', '3', ';'};
    UTF8String document;
    std::size_t done = 0;
    for (; at != UTF8String::npos; at = ioDocument.find('\r', done)) {
        document.append(ioDocument, done, at - done).append(kReference, sizeof kReference);
        done = at + 1;
    }
    ioDocument = document.append(ioDocument, done);
}

} // namespace

void utils::SavePropList(filesupport::File& ioFile, PropList const& inList) {
    UTF8String document;
    WritePropList(document, inList);
    ReferToReturns(document);
    if (!impl::IsReadable(document) || impl::HoldsCutText(inList)) {
        throw filesupport::file_exception(ioFile);
    }

    filesupport::SafeSave save(ioFile);
    // While it is written, others may read only what is sure to have no old version.
    bool const isFirst =
        platform::Inspect(ioFile.Helper().Path()).error == platform::kError_FileNotFound;
    auto const readers = isFirst ? platform::Readers::kAnybody : platform::Readers::kOwner;
    if (platform::WriteNewFile(save.GetTempFile().Helper().Path(), readers, document.data(),
                               document.size()) != platform::kError_None) {
        throw filesupport::file_exception(ioFile);
    }
    save.Commit();
}

void utils::SavePropList(UTF16String const& inPath, PropList const& inList) {
    filesupport::File file(inPath);
    SavePropList(file, inList);
}

} // namespace brindle::proplist
