#include <brindle/proplist/PropListUtils.h>

#include "filesupport/src/files/NewVersion.h"
#include "platform/Files.h"
#include "proplist/src/document/DocumentCheck.h"
#include "proplist/src/document/DocumentWriter.h"
#include "proplist/src/model/PropListAccess.h"

#include <brindle/filesupport/FileExceptions.h>

#include <optional>

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

/// Writes the new version of a file block by block. It is not begun before the first block is
/// complete, so that a document of one block is checked before anything is touched.
class NewDocument {
public:
    explicit NewDocument(filesupport::File const& inFile) : mFile(inFile) {}

    /// Writes the text, and leaves it empty.
    void Take(UTF8String& ioText) {
        EscapeCarriageReturns(ioText);
        RequireCharacters(impl::HasOnlyXMLCharacters(ioText));
        if (!mNewVersion) {
            mNewVersion.emplace(filesupport::BeginOrThrow(mFile, {}));
        }
        filesupport::RequireWritten(mFile, mNewVersion->Write(ioText.data(), ioText.size()));
        ioText.clear();
    }

    void RequireCharacters(bool inAreAllowed) const {
        if (!inAreAllowed) {
            Refuse(kKey_SaveText);
        }
    }

    [[noreturn]] void Refuse(char const* inKey) const {
        throw Because(filesupport::file_exception(mFile, inKey), FileOperation::kReplace,
                      utility::SystemError::kNone);
    }

    /// Puts the file in place. Something was written.
    void Commit() { filesupport::CommitOrThrow(*mNewVersion, mFile); }

private:
    filesupport::File const& mFile;
    std::optional<platform::FileReplacement> mNewVersion;
};

} // namespace

void utils::SavePropList(filesupport::File const& inFile, PropList const& inList,
                         WriteOptions const& inOptions) {
    NewDocument document(inFile);
    document.RequireCharacters(!impl::HasTextWithNul(inList));
    if (IsUnread(inList, inFile.FullPath())) {
        document.Refuse(kKey_SaveUnread);
    }
    UTF8String text;
    impl::AppendDocument(text, inList, inOptions,
                         [&document](UTF8String& ioText) { document.Take(ioText); });
    document.Take(text);
    document.Commit();
}

void utils::SavePropList(filesupport::File& ioFile, PropList const& inList) {
    SavePropList(ioFile, inList, {});
}

void utils::SavePropList(filesupport::File const& inFile, PropList const& inList) {
    SavePropList(inFile, inList, {});
}

void utils::SavePropList(UTF16String const& inPath, PropList const& inList) {
    SavePropList(filesupport::File(inPath), inList, {});
}

} // namespace brindle::proplist
