#include "host/seal/PercentNames.h"

#include "utility/src/base/Digits.h"
#include "utility/src/unicode/UTF8Sequence.h"

#include <cstddef>
#include <cstdint>

namespace brindle::host {

namespace {

constexpr char kDigits[] = "0123456789ABCDEF";

/// How many bytes at the position are one character that may stand as it is; 0 if none may.
std::size_t PlainLength(std::string const& inName, std::size_t inPosition) {
    auto const [character, length] =
        utility::DecodeUTF8Sequence(inName.data() + inPosition, inName.size() - inPosition);
    bool const isControl = character < 0x20 || (0x7F <= character && character <= 0x9F);
    bool const isSurrogate = 0xD800 <= character && character <= 0xDFFF;
    bool const isNoncharacter = character == 0xFFFE || character == 0xFFFF;
    return isControl || isSurrogate || isNoncharacter || character == '%' ? 0 : length;
}

} // namespace

UTF8String PercentEncoded(std::string const& inName) {
    UTF8String text;
    text.reserve(inName.size());
    for (std::size_t i = 0; i < inName.size();) {
        std::size_t const length = PlainLength(inName, i);
        if (length != 0) {
            text.append(reinterpret_cast<std::uint8_t const*>(inName.data()) + i, length);
            i += length;
        } else {
            auto const byte = static_cast<std::uint8_t>(inName[i++]);
            text += '%';
            text += static_cast<std::uint8_t>(kDigits[byte >> 4]);
            text += static_cast<std::uint8_t>(kDigits[byte & 0xF]);
        }
    }
    return text;
}

bool PercentDecode(UTF8String const& inText, std::string& outName) {
    outName.clear();
    for (std::size_t i = 0; i < inText.size(); ++i) {
        if (inText[i] != '%') {
            outName += static_cast<char>(inText[i]);
            continue;
        }
        if (inText.size() - i <= 2) {
            return false;
        }
        auto const high = utility::HexDigitValue(inText[i + 1]);
        auto const low = utility::HexDigitValue(inText[i + 2]);
        if ((high | low) > 15) {
            return false;
        }
        outName += static_cast<char>(high << 4 | low);
        i += 2;
    }
    // A name has one text, so what a text stands for is not told twice in a list.
    return PercentEncoded(outName) == inText;
}

} // namespace brindle::host
