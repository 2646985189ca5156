#include <brindle/utility/PercentNames.h>

#include <brindle/utility/Digits.h>
#include <brindle/utility/UTF8Sequence.h>

#include <cstddef>
#include <cstdint>

namespace brindle::utility {

namespace {

constexpr char kDigits[] = "0123456789ABCDEF";

/// The length in bytes of the character at the position, if it needs no encoding; 0 if it does.
std::size_t PlainLength(std::string const& inName, std::size_t inPosition) {
    auto const [character, length] =
        DecodeUTF8Sequence(inName.data() + inPosition, inName.size() - inPosition);
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
        auto const high = HexDigitValue(inText[i + 1]);
        auto const low = HexDigitValue(inText[i + 2]);
        if ((high | low) > 15) {
            return false;
        }
        outName += static_cast<char>(high << 4 | low);
        i += 2;
    }
    // Every name has one encoding, so that no two texts are the same name.
    return PercentEncoded(outName) == inText;
}

} // namespace brindle::utility
