#include "debug/src/database/DatabaseFile.h"

#include "filesupport/src/files/StreamFailure.h"

#include <brindle/filesupport/Dir.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/PlatformByteStreams.h>
#include <brindle/utility/FileUtils.h>

#include <algorithm>
#include <string>

namespace brindle::debug {

namespace {

constexpr std::uint64_t kMostBytes = std::uint64_t{256} << 20;
constexpr std::uint64_t kBytesAtATime = std::uint64_t{1} << 20;

filesupport::File InPreferences(char16_t const* inName) {
    std::u16string const name(inName);
    return {filesupport::Dir::PrefDir(), UTF16String(name.begin(), name.end())};
}

UTF8String ContentOf(filesupport::File const& inFile) {
    filesupport::IPlatformByteStream stream(inFile, filesupport::kShareWithEverybody);
    UTF8String content;
    auto left = stream.Length();
    while (left > 0) {
        if (content.size() >= kMostBytes) {
            filesupport::ThrowOnFailure(inFile, config::FileOperation::kRead,
                                        platform::kError_FileTooLarge);
        }
        auto const count = std::min(left, kBytesAtATime);
        auto const start = content.size();
        content.resize(start + count);
        stream.ReadBlock(content.data() + start, static_cast<std::uint32_t>(count));
        auto const nul = content.find(std::uint8_t{0}, start);
        if (nul != UTF8String::npos) {
            content.resize(nul);
            break;
        }
        left -= count;
    }
    return content;
}

} // namespace

UTF8String DatabaseFile::Read() {
    mIsUnread = true;
    UTF8String content;
    try {
        content = ContentOf(InPreferences(mName));
    } catch (filesupport::file_not_found_exception const&) {
        // No file is an empty database.
    }
    mIsUnread = false;
    return content;
}

void DatabaseFile::Write(UTF8String const& inContent) const {
    auto const path = InPreferences(mName).FullPath();
    if (!mIsUnread || !utility::FileUtils::FileExists(path)) {
        utility::FileUtils::SimpleWriteStringToFile(path, inContent);
    }
}

bool FieldReader::Next(std::uint8_t inDelimiter, UTF8String& outField) {
    auto const end = mText.find(inDelimiter, mPosition);
    if (end == UTF8String::npos) {
        return false;
    }
    outField.assign(mText, mPosition, end - mPosition);
    mPosition = end + 1;
    return true;
}

void ReadEntries(UTF8String const& inText, proplist::PropList& ioEntries) {
    FieldReader fields(inText);
    UTF8String key;
    UTF8String value;
    while (fields.Next('\t', key) && fields.Next('\n', value)) {
        ioEntries.SetValue(key, value);
    }
}

} // namespace brindle::debug
