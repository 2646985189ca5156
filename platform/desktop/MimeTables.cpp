#include "platform/desktop/MimeTables.h"

#include "platform/desktop/KeyFile.h"
#include "platform/portable/Ascii.h"

#include <algorithm>
#include <charconv>
#include <tuple>

namespace brindle::platform {

namespace {

constexpr std::size_t kMostTypes = 16;
constexpr std::size_t kMostEntries = 64;
constexpr std::size_t kLongestName = 255;
constexpr std::string_view kEntrySuffix = ".desktop";

/// Removes what stands before the separator, and the separator itself, and returns it; all of the
/// text if there is no separator.
std::string_view TakeField(std::string_view& ioText, char inSeparator) {
    auto const end = std::min(ioText.find(inSeparator), ioText.size());
    auto const field = ioText.substr(0, end);
    ioText.remove_prefix(std::min(end + 1, ioText.size()));
    return field;
}

std::string_view EndOf(std::string_view inText, std::size_t inLength) {
    return inText.substr(inText.size() - std::min(inLength, inText.size()));
}

/// Whether this is the name of a desktop entry, and not a path that would lead out of the directory
/// of entries, even when its dashes are read as separators.
bool IsEntryName(std::string_view inName) {
    return inName.size() > kEntrySuffix.size() && inName.size() <= kLongestName &&
           EndOf(inName, kEntrySuffix.size()) == kEntrySuffix && inName.front() != '.' &&
           inName.find("-.") == std::string_view::npos &&
           inName.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
}

} // namespace

void ExtensionTypes::Add(std::string_view inBytes) {
    constexpr std::string_view kNoFurtherPatterns = "__NOGLOBS__";
    constexpr std::string_view kCaseCounts = "cs";

    std::vector<std::string> typesWithoutFurtherPatterns;
    while (!inBytes.empty()) {
        // weight:type:pattern:flag,flag
        auto line = TakeField(inBytes, '\n');
        auto const weightText = TakeField(line, ':');
        auto const type = TakeField(line, ':');
        auto pattern = TakeField(line, ':');
        auto flags = TakeField(line, ':');

        std::uint32_t weight = 0;
        auto const weightEnd = weightText.data() + weightText.size();
        auto const [end, error] = std::from_chars(weightText.data(), weightEnd, weight);
        if (error != std::errc() || end != weightEnd || type.empty() || pattern.empty()) {
            continue;
        }
        if (pattern == kNoFurtherPatterns) {
            typesWithoutFurtherPatterns.emplace_back(type);
            continue;
        }
        bool const isEnding = pattern.size() > 1 && pattern.front() == '*' &&
                              pattern.find_first_of("*?[\\", 1) == std::string_view::npos;
        if (!isEnding) {
            continue;
        }
        pattern.remove_prefix(1);
        bool caseCounts = false;
        while (!flags.empty()) {
            caseCounts = TakeField(flags, ',') == kCaseCounts || caseCounts;
        }
        auto const ending = EndOf(mExtension, pattern.size());
        bool const isSameCase = ending == pattern;
        bool const isMatch = isSameCase || (!caseCounts && EqualsIgnoringCase(ending, pattern));
        auto const& without = mTypesWithoutFurtherPatterns;
        if (isMatch && std::find(without.begin(), without.end(), type) == without.end()) {
            mMatches.push_back({std::string(type), weight, pattern.size(), isSameCase});
        }
    }
    mTypesWithoutFurtherPatterns.insert(mTypesWithoutFurtherPatterns.end(),
                                        typesWithoutFurtherPatterns.begin(),
                                        typesWithoutFurtherPatterns.end());
}

std::vector<std::string> ExtensionTypes::Types() const {
    auto matches = mMatches;
    std::stable_sort(matches.begin(), matches.end(), [](Match const& inLHS, Match const& inRHS) {
        return std::tie(inLHS.weight, inLHS.length, inLHS.isSameCase) >
               std::tie(inRHS.weight, inRHS.length, inRHS.isSameCase);
    });
    std::vector<std::string> types;
    for (Match const& match : matches) {
        if (types.size() == kMostTypes) {
            break;
        }
        if (std::find(types.begin(), types.end(), match.type) == types.end()) {
            types.push_back(match.type);
        }
    }
    return types;
}

std::vector<std::string> EntriesFor(std::string_view inBytes, std::string_view inGroup,
                                    std::string_view inType) {
    std::vector<std::string> names;
    KeyFileReader reader(inBytes);
    for (KeyFileEntry entry; reader.Next(entry);) {
        if (entry.group != inGroup || entry.key != inType) {
            continue;
        }
        while (!entry.value.empty() && names.size() < kMostEntries) {
            auto const name = TakeField(entry.value, ';');
            if (IsEntryName(name)) {
                names.emplace_back(name);
            }
        }
    }
    return names;
}

} // namespace brindle::platform
