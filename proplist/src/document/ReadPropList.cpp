#include <brindle/proplist/PropListUtils.h>

#include "platform/Files.h"
#include "proplist/src/document/ReadErrors.h"

#include <brindle/filesupport/File.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/proplist/PropListXMLHandler.h>
#include <brindle/xml/Parser.h>

#include <memory>

namespace brindle::proplist::utils {

namespace {

/// A parser that reads into the list, or none if the host installed none.
std::unique_ptr<xml::AbstractDocParser> GetParser(PropList& ioList) {
    std::unique_ptr<xml::AbstractParseHandler> handler =
        std::make_unique<PropListXMLHandler>(ioList);
    return xml::GetParser(handler);
}

/// Puts ".old" behind the name of the file, and returns the new path.
UTF16String RenameToOld(filesupport::File inFile) {
    auto const suffix = u".old"_utf16;
    UTF16String const newPath = inFile.FullPath() + suffix;
    filesupport::File const older(newPath);
    if (older.Exists()) {
        older.Delete();
    }
    inFile.Rename(inFile.GetName() + suffix);
    return newPath;
}

/// False if the file is not there, could not be read or could not be renamed. Where reading is what
/// failed nothing shows that the file is damaged: somebody may just be saving it.
bool SetAside(UTF16String const& inPath) {
    filesupport::File const file(inPath);
    if (!platform::OpenForReading(file.Helper().Path())) {
        return false;
    }
    UTF16String newPath;
    try {
        newPath = RenameToOld(file);
    } catch (filesupport::file_exception const&) {
        return false;
    }
    try {
        impl::ThrowReadError(
            impl::kReadError_Parsing,
            "$$$/brn/proplist/Error/PropListUtils/ParsingPropertiesListCorruptRename=Error parsing "
            "properties list from file \"^1\". It has been renamed to \"^2\". Proceeding.",
            inPath, newPath);
    } catch (...) { // the caller goes on with an empty list, whatever the host made of the report
    }
    return true;
}

} // namespace

void ReadPropList(UTF8String const& inText, PropList& ioList) {
    auto const parser = GetParser(ioList);
    if (parser == nullptr) {
        impl::ThrowReadError(impl::kReadError_MissingParserFactory,
                             "$$$/brn/proplist/Error/PropListUtils/MissingParserFactoryRead="
                             "Missing XML Parser Factory in ReadPropList.");
        return;
    }
    if (parser->ParseBuffer(inText) != xml::kXMLParseStatus_Success) {
        impl::ThrowReadError(impl::kReadError_Parsing,
                             "$$$/brn/proplist/Error/PropListUtils/ParsingPropertiesListRead="
                             "Error parsing properties list from memory.");
    }
}

void LoadPropList(UTF16String const& inPath, PropList& ioList, bool inRenameCorrupt) {
    auto const parser = GetParser(ioList);
    if (parser == nullptr) {
        impl::ThrowReadError(impl::kReadError_MissingParserFactory,
                             "$$$/brn/proplist/Error/PropListUtils/MissingParserFactoryLoad="
                             "Missing XML Parser Factory in LoadPropList.");
        return;
    }
    if (parser->ParseDocument(inPath) == xml::kXMLParseStatus_Success) {
        return;
    }
    ioList.Clear();
    if (!inRenameCorrupt || !SetAside(inPath)) {
        impl::ThrowReadError(impl::kReadError_Parsing,
                             "$$$/brn/proplist/Error/PropListUtils/ParsingPropertiesListLoad="
                             "Error parsing properties list from file \"^1\".",
                             inPath);
    }
}

} // namespace brindle::proplist::utils
