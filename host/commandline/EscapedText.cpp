#include "host/commandline/EscapedText.h"

#include <brindle/utility/UTF8Sequence.h>

namespace brindle::host {

namespace {

void AppendByte(std::string& ioText, char const* inPrefix, std::size_t inByte) {
    constexpr char kDigits[] = "0123456789abcdef";
    ioText += inPrefix;
    ioText += kDigits[inByte >> 4 & 15];
    ioText += kDigits[inByte & 15];
}

void AppendControl(std::string& ioText, std::size_t inCharacter) {
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
        AppendByte(ioText, "\\u00", inCharacter);
    }
}

} // namespace

std::string EscapedText(std::string const& inText, std::string const& inMarked) {
    std::string escaped;
    escaped.reserve(inText.size());
    for (std::size_t i = 0; i < inText.size();) {
        auto const [character, length] =
            utility::DecodeUTF8Sequence(inText.data() + i, inText.size() - i);
        bool const isSurrogate = character >= 0xD800 && character <= 0xDFFF;
        if (length == 0 || isSurrogate) {
            AppendByte(escaped, "\\x", static_cast<unsigned char>(inText[i++]));
            continue;
        }
        if (character < 0x20 || (character >= 0x7F && character <= 0x9F)) {
            AppendControl(escaped, character);
        } else {
            if (length == 1 && inMarked.find(inText[i]) != std::string::npos) {
                escaped += '\\';
            }
            escaped.append(inText, i, length);
        }
        i += length;
    }
    return escaped;
}

} // namespace brindle::host
