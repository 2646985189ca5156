#include <brindle/proplist/PropListUtils.h>

#include "platform/Files.h"
#include "proplist/src/document/DocumentCheck.h"
#include "proplist/src/model/PropListAccess.h"

#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/SafeSaveStream.h>

namespace brindle::proplist {

namespace {

using config::Because;
using config::FileOperation;

// The program is the reason, not the system.
constexpr char kKey_SaveText[] =
    "$$$/brindle/proplist/Save/Text=Could not save the file '@0'. A key or a text has a character "
    "that the file cannot hold.";
constexpr char kKey_SaveUnread[] =
    "$$$/brindle/proplist/Save/Unread=The file '@0' was not replaced. It could not be read, and "
    "what it holds would be lost.";

/// Replaces carriage returns by references, since a reader turns plain ones into line feeds.
void EscapeCarriageReturns(UTF8String& ioDocument) {
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

/// True if the file exists, by this path or another one, and should have been read into the list.
bool IsUnread(PropList const& inList, UTF16String const& inPath) {
    UTF16String const* const unread = impl::PropListAccess::UnreadFile(inList);
    if (unread == nullptr) {
        return false;
    }
    if (*unread == inPath) {
        return platform::IsNameTaken(inPath);
    }
    auto const missed = platform::Inspect(*unread);
    auto const target = platform::Inspect(inPath);
    return missed && target && missed.value.identity == target.value.identity;
}

} // namespace

void utils::SavePropList(filesupport::File& ioFile, PropList const& inList) {
    UTF8String document;
    WritePropList(document, inList);
    EscapeCarriageReturns(document);
    if (!impl::HasOnlyXMLCharacters(document) || impl::HasTextWithNul(inList)) {
        throw Because(filesupport::file_exception(ioFile, kKey_SaveText), FileOperation::kReplace,
                      utility::SystemError::kNone);
    }
    if (IsUnread(inList, ioFile.FullPath())) {
        throw Because(filesupport::file_exception(ioFile, kKey_SaveUnread), FileOperation::kReplace,
                      utility::SystemError::kNone);
    }

    filesupport::SafeSaveText(ioFile, document);
}

void utils::SavePropList(filesupport::File const& inFile, PropList const& inList) {
    auto file = inFile;
    SavePropList(file, inList);
}

void utils::SavePropList(UTF16String const& inPath, PropList const& inList) {
    filesupport::File file(inPath);
    SavePropList(file, inList);
}

} // namespace brindle::proplist
