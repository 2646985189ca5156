#include "platform/desktop/UserDirectories.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace brindle::platform {

namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kHome = "$HOME";

bool BeginsWith(std::string_view inText, std::string_view inPrefix) noexcept {
    return inText.substr(0, inPrefix.size()) == inPrefix;
}

std::string_view WithoutBlanksInFront(std::string_view inText) noexcept {
    return inText.substr(std::min(inText.find_first_not_of(kBlanks), inText.size()));
}

/// What the line assigns to the key, from its quotation mark on; nothing for every other line.
std::optional<std::string_view> AssignedText(std::string_view inLine, std::string_view inKey) {
    inLine = WithoutBlanksInFront(inLine);
    if (!BeginsWith(inLine, inKey)) {
        return {};
    }
    inLine = WithoutBlanksInFront(inLine.substr(inKey.size()));
    if (!BeginsWith(inLine, "=")) {
        return {};
    }
    return WithoutBlanksInFront(inLine.substr(1));
}

/// The text up to the closing quotation mark, without its backslashes; nothing if it is not closed.
std::optional<std::string> Unquoted(std::string_view inText) {
    std::string text;
    for (std::size_t i = 0; i < inText.size(); ++i) {
        if (inText[i] == '"') {
            return text;
        }
        bool const isEscape = inText[i] == '\\' && i + 1 < inText.size();
        text += inText[isEscape ? ++i : i];
    }
    return {};
}

/// The path that a quoted value stands for; empty if it stands for none.
std::string PathOf(std::string_view inQuoted, std::string_view inHome) {
    if (!BeginsWith(inQuoted, "\"")) {
        return {};
    }
    inQuoted.remove_prefix(1);
    bool const isBelowHome = BeginsWith(inQuoted, kHome);
    if (isBelowHome) {
        inQuoted.remove_prefix(kHome.size());
    }
    auto const path = Unquoted(inQuoted);
    bool const isPath = path && (BeginsWith(*path, "/") || (isBelowHome && path->empty()));
    if (!isPath || (isBelowHome && inHome.empty())) {
        return {};
    }
    return isBelowHome ? std::string(inHome) + *path : *path;
}

} // namespace

std::string UserDirectory(std::string_view inContent, std::string_view inKey,
                          std::string_view inHome) {
    std::string found;
    while (!inContent.empty()) {
        auto const end = std::min(inContent.find('\n'), inContent.size());
        if (auto const assigned = AssignedText(inContent.substr(0, end), inKey)) {
            auto path = PathOf(*assigned, inHome);
            if (!path.empty()) {
                found = std::move(path);
            }
        }
        inContent.remove_prefix(std::min(end + 1, inContent.size()));
    }
    return found;
}

} // namespace brindle::platform
