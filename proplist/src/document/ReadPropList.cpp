#include <brindle/proplist/PropListUtils.h>

#include "platform/Files.h"

#include <brindle/config/ErrorCodes.h>
#include <brindle/filesupport/File.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/proplist/PropListXMLHandler.h>
#include <brindle/xml/Parser.h>

#include <memory>

namespace brindle::proplist::utils {

namespace {

/// A parser that reads into the list; null if the host has installed no factory.
std::unique_ptr<xml::AbstractDocParser> GetParser(PropList& ioList) {
    std::unique_ptr<xml::AbstractParseHandler> handler =
        std::make_unique<PropListXMLHandler>(ioList);
    return xml::GetParser(handler);
}

/// Appends ".old" to the name of the file, in place of an older file of that name. Returns the new
/// path.
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

/// Returns false if the file is missing, cannot be read or cannot be renamed. A file that cannot be
/// read may be intact: another program may be saving it at the moment.
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
        config::ThrowError(config::kError_PropListSetAside, inPath, newPath);
    } catch (...) { // the caller goes on with an empty list, whatever the report threw
    }
    return true;
}

} // namespace

void ReadPropList(UTF8String const& inText, PropList& ioList) {
    auto const parser = GetParser(ioList);
    if (parser == nullptr) {
        config::ThrowError(config::kError_PropListReadWithoutParser);
        return;
    }
    if (parser->ParseBuffer(inText) != xml::kXMLParseStatus_Success) {
        config::ThrowError(config::kError_PropListRead);
    }
}

void LoadPropList(UTF16String const& inPath, PropList& ioList, bool inRenameCorrupt) {
    auto const parser = GetParser(ioList);
    if (parser == nullptr) {
        config::ThrowError(config::kError_PropListLoadWithoutParser);
        return;
    }
    if (parser->ParseDocument(inPath) == xml::kXMLParseStatus_Success) {
        return;
    }
    ioList.Clear();
    if (!inRenameCorrupt || !SetAside(inPath)) {
        config::ThrowError(config::kError_PropListLoad, inPath);
    }
}

} // namespace brindle::proplist::utils
