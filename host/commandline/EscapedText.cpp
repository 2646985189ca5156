#include "host/commandline/EscapedText.h"

namespace brindle::host {

namespace {

bool IsControl(unsigned char inByte) {
    return inByte < 0x20 || inByte == 0x7F;
}

/// The control characters from U+0080 to U+009F are encoded as C2 followed by their number.
bool IsHighControl(std::string const& inText, std::size_t inPosition) {
    return inText[inPosition] == '\xC2' && inPosition + 1 < inText.size() &&
           (inText[inPosition + 1] & 0xE0) == 0x80;
}

void AppendControl(std::string& ioText, unsigned char inCharacter) {
    constexpr char kDigits[] = "0123456789abcdef";
    switch (inCharacter) {
    case '\t':
        ioText += "\\t";
        break;
    case '\n':
        ioText += "\\n";
        break;
    case '\r':
        ioText += "\\r";
        break;
    default:
        ioText += {'\\', 'u', '0', '0', kDigits[inCharacter >> 4], kDigits[inCharacter & 15]};
    }
}

} // namespace

std::string EscapedName(std::string const& inName) {
    std::string escaped;
    escaped.reserve(inName.size());
    for (char const character : inName) {
        switch (character) {
        case '\\':
            escaped += "\\\\";
            break;
        case '\n':
            escaped += "\\n";
            break;
        case '\r':
            escaped += "\\r";
            break;
        default:
            escaped += character;
        }
    }
    return escaped;
}

std::string EscapedText(std::string const& inText, std::string const& inOthers) {
    std::string escaped;
    escaped.reserve(inText.size());
    for (std::size_t i = 0; i < inText.size(); ++i) {
        char const character = inText[i];
        if (IsControl(static_cast<unsigned char>(character))) {
            AppendControl(escaped, static_cast<unsigned char>(character));
        } else if (IsHighControl(inText, i)) {
            AppendControl(escaped, static_cast<unsigned char>(inText[++i]));
        } else {
            if (character == '\\' || inOthers.find(character) != std::string::npos) {
                escaped += '\\';
            }
            escaped += character;
        }
    }
    return escaped;
}

} // namespace brindle::host
