#include "host/seal/Manifest.h"

#include "host/commandline/EscapedText.h"
#include "host/commandline/PlainText.h"
#include "host/files/FileErrors.h"
#include "host/files/Input.h"
#include "host/plist/LoadList.h"
#include <brindle/utility/Digits.h>

#include <brindle/filesupport/NativePath.h>
#include <brindle/proplist/PropListUtils.h>
#include <brindle/utility/PercentNames.h>
#include <brindle/utility/Streams.h>

#include <algorithm>
#include <charconv>
#include <ctime>

namespace brindle::host {

namespace {

using namespace brindle::literals;
using proplist::PropList;
using proplist::PropListEntry;

constexpr std::uint32_t kFormat = 1;

constexpr char kKey_Format[] = "format";
constexpr char kKey_Root[] = "root";
constexpr char kKey_Files[] = "files";
constexpr char kKey_Others[] = "others";
constexpr char kKey_Size[] = "size";
constexpr char kKey_Modified[] = "modified";
constexpr char kKey_CRC[] = "crc";

/// The words for entries without a sum, in the order of `EntryState::Kind`.
constexpr char const* kKindWords[] = {
    nullptr, "fifo",          "socket",          "device",
    "other", "dangling link", "unreadable file", "unreadable directory"};

/// A time of the file system in ISO 8601, UTC.
std::string TimeText(std::uint64_t inTicks) {
    constexpr std::uint64_t kTicksPerSecond = 10'000'000;
    constexpr std::int64_t kSecondsFrom1601To1970 = 11'644'473'600;
    auto const seconds =
        static_cast<std::time_t>(inTicks / kTicksPerSecond) - kSecondsFrom1601To1970;
    char text[64];
    std::size_t const length =
        std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", std::gmtime(&seconds));
    std::snprintf(text + length, sizeof text - length, ".%07uZ",
                  static_cast<unsigned>(inTicks % kTicksPerSecond));
    return text;
}

bool IsTimeText(std::string const& inText) {
    constexpr char kForm[] = "0000-00-00T00:00:00.0000000Z";
    std::string form = inText;
    for (char& character : form) {
        character = utility::IsDigit(character) ? '0' : character;
    }
    std::size_t const years =
        form.find_first_not_of('0'); // four digits, or more from the year 10000
    return years != std::string::npos && years >= 4 && form.substr(years - 4) == kForm;
}

/// True if the path stays below the directory that it is relative to, whatever is there: no name in
/// it is empty, "." or "..".
bool IsPathBelow(std::string const& inPath) {
    for (std::size_t start = 0; start <= inPath.size();) {
        std::size_t const end = std::min(inPath.find('/', start), inPath.size());
        std::string const name = inPath.substr(start, end - start);
        if (name.empty() || name == "." || name == ".." || name.find('\0') != std::string::npos) {
            return false;
        }
        start = end + 1;
    }
    return true;
}

[[noreturn]] void Refuse(std::string const& inReason) {
    throw unreadable_error("is no manifest: " + inReason);
}

std::string Quoted(UTF8String const& inKey) {
    return "'" + EscapedText(PlainText(inKey)) + "'";
}

std::string ReadPath(UTF8String const& inKey) {
    std::string path;
    if (!utility::PercentDecode(inKey, path) || !IsPathBelow(path)) {
        Refuse(Quoted(inKey) + " is no path below the root");
    }
    return path;
}

SealedEntry ReadFile(PropListEntry const& inEntry) {
    UTF8String const& key = inEntry.Key();
    auto const require = [&key](bool inIsRight, char const* inKeyOfFile) {
        if (!inIsRight) {
            Refuse("the " + std::string(inKeyOfFile) + " of " + Quoted(key) +
                   " is missing or wrong");
        }
    };
    SealedEntry file{ReadPath(key), {}};
    FileSum& sum = file.state.sum;
    PropList const* const properties = inEntry.SubList();
    require(properties != nullptr, "list");
    require(properties->GetValue(kKey_Size, sum.size), "size");

    require(IsTimeText(properties->Get(kKey_Modified, "")), "time");

    auto const digits = properties->Get(kKey_CRC, "");
    std::from_chars(digits.data(), digits.data() + digits.size(), sum.crc, 16);
    require(digits == CRCText(sum.crc), "crc");
    return file;
}

SealedEntry ReadOther(PropListEntry const& inEntry) {
    SealedEntry entry{ReadPath(inEntry.Key()), {}};
    auto const word = inEntry.Get("");
    for (int kind = EntryState::kPipe; kind <= EntryState::kUnreadableDirectory; ++kind) {
        if (word == kKindWords[kind]) {
            entry.state.kind = static_cast<EntryState::Kind>(kind);
            return entry;
        }
    }
    Refuse("what " + Quoted(inEntry.Key()) + " is, is missing or unknown");
}

/// Appends what `inRead` makes of each entry of a list; nothing if there is no list.
void ReadEntries(PropList const* inList, SealedEntry (*inRead)(PropListEntry const& inEntry),
                 std::vector<SealedEntry>& ioEntries) {
    if (inList == nullptr) {
        return;
    }
    for (PropListEntry const& entry : *inList) {
        ioEntries.push_back(inRead(entry));
    }
}

} // namespace

NewManifest::NewManifest(std::string const& inRoot)
    : mFiles(*mList.NewSubList(kKey_Files)), mOthers(*mList.NewSubList(kKey_Others)) {
    mList.Set(kKey_Format, kFormat);
    mList.Set(kKey_Root, utility::PercentEncoded(inRoot));
}

void NewManifest::Add(std::string const& inPath, EntryState const& inState) {
    UTF8String const key = utility::PercentEncoded(inPath);
    if (inState.kind != EntryState::kFile) {
        mOthers.Set(key, kKindWords[inState.kind]);
        return;
    }
    PropList& properties = *mFiles.NewSubList(key);
    properties.Set(kKey_Size, inState.sum.size);
    properties.Set(kKey_Modified, TimeText(inState.modified));
    properties.Set(kKey_CRC, CRCText(inState.sum.crc));
}

void NewManifest::Save(std::string const& inName) const {
    if (inName != kStandardStream) {
        filesupport::File file = filesupport::FileFromNative(inName);
        return proplist::utils::SavePropList(file, mList);
    }
    UTF8String text;
    proplist::utils::WritePropList(text, mList);
    utility::streams::Out << PlainText(text);
}

Manifest ReadManifest(std::string const& inName) {
    PropList list;
    LoadList(inName, list);

    std::uint32_t format = 0;
    if (!list.GetValue(kKey_Format, format)) {
        Refuse("it has no format number");
    }
    if (format != kFormat) {
        Refuse("its format " + std::to_string(format) + " is not known");
    }
    Manifest manifest;
    if (!utility::PercentDecode(list.Get<UTF8String>(kKey_Root), manifest.root) ||
        manifest.root.empty() || manifest.root.find('\0') != std::string::npos) {
        Refuse("its root is missing or wrong");
    }
    PropList const* const files = list.GetSubList(kKey_Files);
    if (files == nullptr) {
        Refuse("it has no list of files");
    }
    std::vector<SealedEntry>& entries = manifest.entries;
    ReadEntries(files, ReadFile, entries);
    ReadEntries(list.GetSubList(kKey_Others), ReadOther, entries);
    std::sort(
        entries.begin(), entries.end(),
        [](SealedEntry const& inLHS, SealedEntry const& inRHS) { return inLHS.path < inRHS.path; });
    auto const twice = std::adjacent_find(entries.begin(), entries.end(),
                                          [](SealedEntry const& inLHS, SealedEntry const& inRHS) {
                                              return inLHS.path == inRHS.path;
                                          });
    if (twice != entries.end()) {
        Refuse("it has '" + EscapedText(twice->path) + "' twice");
    }
    return manifest;
}

} // namespace brindle::host
