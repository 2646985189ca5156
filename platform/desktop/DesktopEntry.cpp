#include "platform/desktop/DesktopEntry.h"

#include "platform/desktop/KeyFile.h"
#include "platform/portable/Ascii.h"
#include <brindle/utility/Digits.h>

#include <algorithm>
#include <cstddef>

namespace brindle::platform {

namespace {

constexpr std::string_view kGroup = "Desktop Entry";
constexpr std::string_view kScheme = "file:";
constexpr std::string_view kThisMachine = "localhost";

std::string Escaped(std::string_view inText) {
    std::string value;
    for (std::size_t i = 0; i < inText.size(); ++i) {
        switch (auto const character = inText[i]) {
        case ' ':
            // Readers trim blanks at either end, so these are escaped.
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

/// Error 13 for a percent sign without two digits behind it.
Result<std::string> PercentDecoded(std::string_view inText) {
    std::string text;
    for (std::size_t i = 0; i < inText.size(); ++i) {
        if (inText[i] != '%') {
            text += inText[i];
            continue;
        }
        if (inText.size() - i <= 2) {
            return {{}, kError_InvalidData};
        }
        auto const high = utility::HexDigitValue(inText[i + 1]);
        auto const low = utility::HexDigitValue(inText[i + 2]);
        if ((high | low) > 15) {
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

/// The first word of a command line: blanks separate words, double quotes keep a word together, and
/// inside them a backslash escapes the next character. Empty if a quote is not closed, and if the
/// word contains a field code, which cannot be a program.
std::string FirstWord(std::string_view inCommand) {
    std::string word;
    bool isQuoted = false;
    std::size_t i = std::min(inCommand.find_first_not_of(' '), inCommand.size());
    for (; i < inCommand.size() && (isQuoted || inCommand[i] != ' '); ++i) {
        char const character = inCommand[i];
        char const next = i + 1 < inCommand.size() ? inCommand[i + 1] : '\0';
        if (character == '"') {
            isQuoted = !isQuoted;
        } else if (character == '\\' && isQuoted) {
            word += next;
            ++i;
        } else if (character == '%' && next != '%') {
            return {};
        } else {
            word += character;
            i += character == '%';
        }
    }
    return isQuoted ? std::string() : word;
}

} // namespace

Result<DesktopLink> ParseDesktopLink(std::string_view inBytes) {
    DesktopLink link;
    std::string url;
    std::string_view type;
    KeyFileReader reader(inBytes);
    for (KeyFileEntry entry; reader.Next(entry);) {
        if (entry.group != kGroup) {
            continue;
        }
        if (entry.key == "Type") {
            type = entry.value;
        } else if (entry.key == "URL") {
            url = UnescapedValue(entry.value);
        } else if (entry.key == "Name") {
            link.name = UnescapedValue(entry.value);
        } else if (entry.key == "Comment") {
            link.comment = UnescapedValue(entry.value);
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

Result<DesktopApplication> ParseDesktopApplication(std::string_view inBytes) {
    DesktopApplication application;
    std::string_view type;
    bool isHidden = false;
    KeyFileReader reader(inBytes);
    for (KeyFileEntry entry; reader.Next(entry);) {
        if (entry.group != kGroup) {
            continue;
        }
        if (entry.key == "Type") {
            type = entry.value;
        } else if (entry.key == "Hidden") {
            isHidden = entry.value == "true";
        } else if (entry.key == "Exec") {
            application.program = FirstWord(UnescapedValue(entry.value));
        } else if (entry.key == "TryExec") {
            application.witness = UnescapedValue(entry.value);
        }
    }
    if (type != "Application" || isHidden || application.program.empty()) {
        return {{}, kError_InvalidData};
    }
    return {std::move(application), kError_None};
}

std::string FormatDesktopLink(DesktopLink const& inLink) {
    std::string text = "[" + std::string(kGroup) + "]";
    text += "\nType=Link\nName=" + Escaped(inLink.name);
    if (!inLink.comment.empty()) {
        text += "\nComment=" + Escaped(inLink.comment);
    }
    text += "\nURL=file://" + PercentEncoded(inLink.path) + '\n';
    return text;
}

} // namespace brindle::platform
