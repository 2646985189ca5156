#include <brindle/proplist/PropListUtils.h>

#include "proplist/src/document/Readable.h"

#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/SafeSaveStream.h>

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

    filesupport::SafeSaveText(ioFile, document);
}

void utils::SavePropList(UTF16String const& inPath, PropList const& inList) {
    filesupport::File file(inPath);
    SavePropList(file, inList);
}

} // namespace brindle::proplist
