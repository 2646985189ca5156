#include "filesupport/src/files/TempNames.h"

#include "filesupport/src/files/PathText.h"
#include "platform/Process.h"
#include "platform/SaveRemains.h"
#include "platform/TextEncoding.h"

#include <brindle/utility/Numbers.h>

#include <algorithm>
#include <cstdint>

namespace brindle::filesupport {

namespace {

constexpr std::size_t kMostBytes = 255; // of a name

bool IsNameTooLong(UTF16String const& inName) {
    return platform::ToCodePage(inName).size() > kMostBytes;
}

/// Removes what stands behind the last "."; false if that is empty, or there is none.
bool DropPart(UTF16String& ioName, bool& outIsNumber) {
    auto const dot = ioName.rfind(u'.');
    if (dot == UTF16String::npos || dot + 1 == ioName.size()) {
        return false;
    }
    outIsNumber = std::all_of(ioName.begin() + static_cast<std::ptrdiff_t>(dot) + 1, ioName.end(),
                              [](auto inUnit) { return inUnit >= u'0' && inUnit <= u'9'; });
    ioName.resize(dot);
    return true;
}

/// True for a name like those that `TempNamesFor` begins: process and thread, with or without an
/// extension behind them.
bool HasIds(UTF16String inName) {
    bool isNumber = false;
    int numbers = 0;
    for (int part = 0; part < 3 && numbers < 2 && DropPart(inName, isNumber); ++part) {
        numbers = isNumber ? numbers + 1 : 0;
    }
    return numbers == 2;
}

} // namespace

TempNames TempNamesFor(File const& inTarget) {
    auto const dot = std::uint16_t{'.'};
    auto const ids = dot + utility::NumberToString(std::int64_t{platform::ProcessId()}) + dot +
                     utility::NumberToString(std::int64_t{platform::ThreadId()});
    auto const number = std::uint16_t{'1'};
    auto title = inTarget.GetTitle();
    auto extension = inTarget.GetExtension(true);
    // The target's name may be so long that only a part of it fits.
    if (IsNameTooLong(ids + number + extension)) {
        extension.clear();
    }
    title.resize(std::min(title.size(), kMostBytes)); // a unit is a byte at least
    while (IsNameTooLong(title + ids + number + extension)) {
        title.pop_back();
    }
    return {title + ids, extension};
}

bool IsOfSave(UTF16String const& inPath) {
    auto const name = LastComponent(inPath);
    return platform::IsHiddenSaveName(name) || (HasIds(name) && platform::HasSaveMark(inPath));
}

void RemoveSaves(std::vector<UTF16String>& ioPaths) {
    ioPaths.erase(std::remove_if(ioPaths.begin(), ioPaths.end(), &IsOfSave), ioPaths.end());
}

} // namespace brindle::filesupport
