#include "host/seal/PercentNames.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace brindle::host {

namespace {

constexpr char kDigits[] = "0123456789ABCDEF";

/// The length in bytes of the character at the position, if it needs no encoding; 0 if it does.
std::size_t PlainLength(std::string const& inName, std::size_t inPosition) {
    auto const byteAt = [&](std::size_t inIndex) {
        return static_cast<std::uint8_t>(inName[inPosition + inIndex]);
    };
    std::uint32_t const lead = byteAt(0);
    if (lead < 0x80) {
        return lead < 0x20 || lead == 0x7F || lead == '%' ? 0 : 1;
    }
    std::size_t const length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (lead < 0xC2 || lead > 0xF4 || length > inName.size() - inPosition) {
        return 0;
    }
    std::uint32_t character = lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(i) & 0xC0) != 0x80) {
            return 0;
        }
        character = character << 6 | (byteAt(i) & 0x3Fu);
    }
    constexpr std::uint32_t kLeast[] = {0xA0, 0x800,
                                        0x10000}; // up to U+009F are control characters
    bool const isPlain = character >= kLeast[length - 2] && character <= 0x10FFFF &&
                         (character < 0xD800 || character > 0xDFFF) && character != 0xFFFE &&
                         character != 0xFFFF;
    return isPlain ? length : 0;
}

/// The value of a digit; 16 if it is none.
std::size_t DigitValue(std::uint8_t inDigit) {
    void const* const found = std::memchr(kDigits, inDigit, 16);
    return found != nullptr ? static_cast<std::size_t>(static_cast<char const*>(found) - kDigits)
                            : 16;
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
        std::size_t const high = inText.size() - i > 2 ? DigitValue(inText[i + 1]) : 16;
        std::size_t const low = high < 16 ? DigitValue(inText[i + 2]) : 16;
        if (low > 15) {
            return false;
        }
        outName += static_cast<char>(high << 4 | low);
        i += 2;
    }
    // Every name has one encoding, so no two keys of a manifest name the same file.
    return PercentEncoded(outName) == inText;
}

} // namespace brindle::host
