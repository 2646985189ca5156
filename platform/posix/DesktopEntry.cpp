#include "platform/posix/DesktopEntry.h"

#include <algorithm>
#include <cstddef>

namespace brindle::platform {

namespace {

constexpr std::string_view kGroup = "[Desktop Entry]";
constexpr std::string_view kScheme = "file:";
constexpr std::string_view kThisMachine = "localhost";

constexpr bool IsBlank(char inCharacter) {
    return inCharacter == ' ' || inCharacter == '\t' || inCharacter == '\r';
}

std::string_view Trimmed(std::string_view inText) {
    while (!inText.empty() && IsBlank(inText.front())) {
        inText.remove_prefix(1);
    }
    while (!inText.empty() && IsBlank(inText.back())) {
        inText.remove_suffix(1);
    }
    return inText;
}

constexpr char LowerAscii(char inCharacter) {
    return 'A' <= inCharacter && inCharacter <= 'Z' ? static_cast<char>(inCharacter + ('a' - 'A'))
                                                    : inCharacter;
}

bool EqualsIgnoringCase(std::string_view inText, std::string_view inLowerCase) {
    return inText.size() == inLowerCase.size() &&
           std::equal(inText.begin(), inText.end(), inLowerCase.begin(),
                      [](char inLHS, char inRHS) { return LowerAscii(inLHS) == inRHS; });
}

std::string Unescaped(std::string_view inValue) {
    std::string text;
    for (std::size_t i = 0; i < inValue.size(); ++i) {
        if (inValue[i] != '\\' || i + 1 == inValue.size()) {
            text += inValue[i];
            continue;
        }
        switch (auto const character = inValue[++i]) {
        case 's':
            text += ' ';
            break;
        case 'n':
            text += '\n';
            break;
        case 't':
            text += '\t';
            break;
        case 'r':
            text += '\r';
            break;
        case '\\':
            text += '\\';
            break;
        default:
            text += '\\';
            text += character;
        }
    }
    return text;
}

std::string Escaped(std::string_view inText) {
    std::string value;
    for (std::size_t i = 0; i < inText.size(); ++i) {
        switch (auto const character = inText[i]) {
        case ' ':
            // A blank inside is itself; one at either end would be trimmed.
            value += i == 0 || i + 1 == inText.size() ? "\\s" : " ";
            break;
        case '\n':
            value += "\\n";
            break;
        case '\t':
            value += "\\t";
            break;
        case '\r':
            value += "\\r";
            break;
        case '\\':
            value += "\\\\";
            break;
        case '\0':
            break;
        default:
            value += character;
        }
    }
    return value;
}

/// -1 for what is no hexadecimal digit.
constexpr int HexDigit(char inCharacter) {
    auto const lower = LowerAscii(inCharacter);
    return '0' <= lower && lower <= '9'   ? lower - '0'
           : 'a' <= lower && lower <= 'f' ? lower - 'a' + 10
                                          : -1;
}

/// Error 13 for a percent sign without two digits behind it.
Result<std::string> PercentDecoded(std::string_view inText) {
    std::string text;
    for (std::size_t i = 0; i < inText.size(); ++i) {
        if (inText[i] != '%') {
            text += inText[i];
            continue;
        }
        auto const high = i + 2 < inText.size() ? HexDigit(inText[i + 1]) : -1;
        auto const low = i + 2 < inText.size() ? HexDigit(inText[i + 2]) : -1;
        if (high < 0 || low < 0) {
            return {{}, kError_InvalidData};
        }
        text += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return {text, kError_None};
}

std::string PercentEncoded(std::string_view inPath) {
    constexpr std::string_view kPlain =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text;
    for (auto const character : inPath) {
        if (kPlain.find(character) != std::string_view::npos) {
            text += character;
        } else {
            auto const byte = static_cast<unsigned char>(character);
            text += '%';
            text += kDigits[byte >> 4];
            text += kDigits[byte & 0xF];
        }
    }
    return text;
}

Result<std::string> PathOfUrl(std::string_view inUrl) {
    Result<std::string> const invalid{{}, kError_InvalidData};
    Result<std::string> path;
    if (EqualsIgnoringCase(inUrl.substr(0, kScheme.size()), kScheme)) {
        auto rest = inUrl.substr(kScheme.size());
        if (rest.substr(0, 2) == "//") {
            rest.remove_prefix(2);
            auto const slash = std::min(rest.find('/'), rest.size());
            auto const host = rest.substr(0, slash);
            if (!host.empty() && !EqualsIgnoringCase(host, kThisMachine)) {
                return invalid;
            }
            rest.remove_prefix(slash);
        }
        path = PercentDecoded(rest);
    } else {
        path.value = inUrl;
    }
    bool const isUsable = path && !path.value.empty() && path.value.front() == '/' &&
                          path.value.find('\0') == std::string::npos;
    return isUsable ? path : invalid;
}

} // namespace

Result<DesktopLink> ParseDesktopLink(std::string_view inBytes) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (inBytes.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
        inBytes.remove_prefix(kByteOrderMark.size());
    }

    DesktopLink link;
    std::string url;
    std::string type;
    bool isInGroup = false;
    while (!inBytes.empty()) {
        auto const lineEnd = std::min(inBytes.find('\n'), inBytes.size());
        auto const line = Trimmed(inBytes.substr(0, lineEnd));
        inBytes.remove_prefix(std::min(lineEnd + 1, inBytes.size()));
        if (line.empty() || line.front() == '#') {
            continue;
        }
        if (line.front() == '[') {
            isInGroup = line == kGroup;
            continue;
        }
        auto const equals = line.find('=');
        if (!isInGroup || equals == std::string_view::npos) {
            continue;
        }
        auto const key = Trimmed(line.substr(0, equals));
        auto const value = Trimmed(line.substr(equals + 1));
        if (key == "Type") {
            type = value;
        } else if (key == "URL") {
            url = Unescaped(value);
        } else if (key == "Name") {
            link.name = Unescaped(value);
        } else if (key == "Comment") {
            link.comment = Unescaped(value);
        }
    }
    if (type != "Link") {
        return {{}, kError_InvalidData};
    }
    auto path = PathOfUrl(url);
    if (!path) {
        return {{}, path.error};
    }
    link.path = std::move(path.value);
    return {std::move(link), kError_None};
}

std::string FormatDesktopLink(DesktopLink const& inLink) {
    std::string text(kGroup);
    text += "\nType=Link\nName=" + Escaped(inLink.name);
    if (!inLink.comment.empty()) {
        text += "\nComment=" + Escaped(inLink.comment);
    }
    text += "\nURL=file://" + PercentEncoded(inLink.path) + '\n';
    return text;
}

} // namespace brindle::platform
