#include <brindle/proplist/PropListUtils.h>

#include "platform/Files.h"
#include "proplist/src/model/PropListAccess.h"

#include <brindle/config/ErrorCodes.h>
#include <brindle/filesupport/File.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/proplist/PropListXMLHandler.h>
#include <brindle/xml/ExpatParser.h>
#include <brindle/xml/Parser.h>

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace brindle::proplist::utils {

namespace {

/// A parser that reads into a list.
struct Reader {
    explicit Reader(PropList& ioList)
        : handler(std::make_unique<PropListXMLHandler>(ioList)), parser(xml::GetParser(handler)) {}

    void UseExpatIfNoneIsInstalled() {
        if (parser == nullptr) {
            parser = std::make_unique<xml::ExpatParser>(handler);
        }
    }

    std::unique_ptr<xml::AbstractParseHandler>
        handler;                                    ///< empty, if the factory took it as it should
    std::unique_ptr<xml::AbstractDocParser> parser; ///< null if no factory is installed
};

struct LoadOptions {
    bool renameCorrupt = true;
    bool keepIfMissing = false; ///< the list keeps its properties if there is no file
    bool useExpat = false;      ///< if no parser is installed
};

/// Why the file cannot be read; none if it can be read to its end.
platform::ErrorCode ReadingError(UTF16String const& inPath) {
    auto file = platform::OpenForReading(filesupport::File(inPath).Helper().Path());
    std::vector<std::uint8_t> block(std::size_t{1} << 16);
    while (file) {
        auto const read = file.value.Read(block.data(), block.size());
        if (!read || read.value < block.size()) {
            return read.error;
        }
    }
    return file.error;
}

/// The fault of a parse that failed. A client's parser need not say, and then the file is tried.
xml::XMLParseFault FaultOf(xml::AbstractDocParser const& inParser, UTF16String const* inPath) {
    xml::XMLParseFault fault = inParser.LastFault();
    if (fault.kind <= xml::kXMLParseFault_Unknown) {
        fault.error = inPath == nullptr ? platform::kError_None : ReadingError(*inPath);
        fault.kind = fault.error == platform::kError_None ? xml::kXMLParseFault_Malformed
                                                          : xml::kXMLParseFault_Unreadable;
    }
    return fault;
}

PropListLoadStatus StatusOf(xml::XMLParseFault const& inFault) noexcept {
    if (inFault.kind == xml::kXMLParseFault_Malformed) {
        return kPropListLoad_Damaged;
    }
    bool const isMissing = inFault.error == platform::kError_FileNotFound ||
                           inFault.error == platform::kError_PathNotFound;
    return isMissing ? kPropListLoad_Missing : kPropListLoad_Unreadable;
}

/// False if another file has taken the place of the one that was to be read.
bool IsStillThere(UTF16String const& inPath, platform::Result<platform::FileInfo> const& inBefore) {
    auto const now = platform::Inspect(filesupport::File(inPath).Helper().Path());
    return inBefore && now && now.value.identity == inBefore.value.identity;
}

/// Appends ".old" to the name of the file, in place of an older file of that name. Returns the new
/// path; an empty one if that failed.
UTF16String RenameToOld(UTF16String const& inPath) {
    filesupport::File file(inPath);
    auto const suffix = u".old"_utf16;
    UTF16String const newPath = file.FullPath() + suffix;
    try {
        filesupport::File const older(newPath);
        if (older.Exists()) {
            older.Delete();
        }
        file.Rename(file.GetName() + suffix);
    } catch (filesupport::file_exception const&) {
        return {};
    }
    return newPath;
}

} // namespace

PropListLoadResult TryReadPropList(UTF8String const& inText, PropList& ioList) {
    PropListLoadResult result;
    Reader const reader(ioList);
    if (reader.parser == nullptr) {
        result.status = kPropListLoad_NoParser;
    } else if (reader.parser->ParseBuffer(inText) != xml::kXMLParseStatus_Success) {
        result.fault = FaultOf(*reader.parser, nullptr);
        result.status = StatusOf(result.fault);
    }
    return result;
}

namespace {

PropListLoadResult Load(UTF16String const& inPath, PropList& ioList, LoadOptions const& inOptions) {
    PropListLoadResult result;
    // The file stays marked as unread if this returns early or throws.
    auto before = impl::PropListAccess::ExchangeUnreadFile(
        ioList, std::make_unique<UTF16String>(filesupport::File(inPath).FullPath()));
    Reader reader(ioList);
    if (inOptions.useExpat) {
        reader.UseExpatIfNoneIsInstalled();
    }
    if (reader.parser == nullptr) {
        result.status = kPropListLoad_NoParser;
        return result;
    }
    auto const file = platform::Inspect(filesupport::File(inPath).Helper().Path());
    if (reader.parser->ParseDocument(inPath) != xml::kXMLParseStatus_Success) {
        result.fault = FaultOf(*reader.parser, &inPath);
        result.status = StatusOf(result.fault);
        if (result.status != kPropListLoad_Missing || !inOptions.keepIfMissing) {
            ioList.Clear();
        }
        if (result.status == kPropListLoad_Damaged && !IsStillThere(inPath, file)) {
            // What is there now was saved meanwhile, and is not what was found damaged.
            result.status = kPropListLoad_Unreadable;
            result.fault.kind = xml::kXMLParseFault_Unreadable;
            result.fault.error = platform::kError_SharingViolation;
        }
    }
    if (result.status == kPropListLoad_Unreadable) {
        return result;
    }
    bool const wasSame = before != nullptr && *before == *impl::PropListAccess::UnreadFile(ioList);
    impl::PropListAccess::ExchangeUnreadFile(ioList, wasSame ? nullptr : std::move(before));
    if (result.status == kPropListLoad_Damaged && inOptions.renameCorrupt) {
        result.renamedTo = RenameToOld(inPath);
    }
    return result;
}

} // namespace

PropListLoadResult TryLoadPropList(UTF16String const& inPath, PropList& ioList,
                                   bool inRenameCorrupt) {
    LoadOptions options;
    options.renameCorrupt = inRenameCorrupt;
    return Load(inPath, ioList, options);
}

PropListLoadResult LoadPropList(filesupport::File const& inFile, PropList& ioList,
                                MissingFile inMissing, DamagedFile inDamaged) {
    LoadOptions options;
    options.renameCorrupt = inDamaged == DamagedFile::kIsRenamed;
    options.useExpat = true;
    options.keepIfMissing = inMissing == MissingFile::kIsEmpty;
    PropListLoadResult result = Load(inFile.FullPath(), ioList, options);
    if (result.status == kPropListLoad_Missing && options.keepIfMissing) {
        result = {};
    }
    return result;
}

void ReadPropList(UTF8String const& inText, PropList& ioList) {
    auto const status = TryReadPropList(inText, ioList).status;
    if (status == kPropListLoad_NoParser) {
        config::ThrowError(config::kError_PropListReadWithoutParser);
    } else if (status != kPropListLoad_Done) {
        config::ThrowError(config::kError_PropListRead);
    }
}

void LoadPropList(UTF16String const& inPath, PropList& ioList, bool inRenameCorrupt) {
    PropListLoadResult const result = TryLoadPropList(inPath, ioList, inRenameCorrupt);
    if (result.status == kPropListLoad_Done) {
        return;
    }
    if (result.status == kPropListLoad_NoParser) {
        config::ThrowError(config::kError_PropListLoadWithoutParser);
    } else if (result.renamedTo.empty()) {
        config::ThrowError(config::kError_PropListLoad, inPath);
    } else {
        try {
            config::ThrowError(config::kError_PropListSetAside, inPath, result.renamedTo);
        } catch (...) { // the caller goes on with an empty list, whatever the report threw
        }
    }
}

} // namespace brindle::proplist::utils
