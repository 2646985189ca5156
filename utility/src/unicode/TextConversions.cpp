#include <brindle/utility/TextConversions.h>

#include "utility/src/unicode/WholeText.h"

#include <brindle/utility/UTF8Sequence.h>
#include <brindle/utility/Unicode.h>

namespace brindle::utility {

namespace {

constexpr bool kWideIsUTF16 = sizeof(wchar_t) == sizeof(std::uint16_t);

/// The units as they are.
template <typename To, typename From>
To CopyUnits(From const& inText) {
    To text;
    text.reserve(inText.size());
    for (auto const unit : inText) {
        text += static_cast<typename To::value_type>(unit);
    }
    return text;
}

UTF16String WellFormed(UTF16String inText) {
    Replacements ignored;
    ReplaceLoneSurrogates(inText, ignored);
    return inText;
}

UTF16String FromCodePoints(std::wstring_view inText) {
    UTF16String text;
    text.reserve(inText.size());
    for (auto const character : inText) {
        auto const value = static_cast<char32_t>(character);
        if (value > 0x10FFFF || (value >= 0xD800 && value < 0xE000)) {
            text += std::uint16_t{0xFFFD};
        } else if (value < 0x10000) {
            text += static_cast<std::uint16_t>(value);
        } else {
            text += HighSurrogate(value);
            text += LowSurrogate(value);
        }
    }
    return text;
}

std::wstring ToCodePoints(UTF16String const& inText) {
    std::wstring text;
    text.reserve(inText.size());
    for (std::size_t i = 0; i < inText.size(); ++i) {
        char32_t value = inText[i];
        if (UnicodeSurrogate(inText[i]) == kSurrogate_High) {
            value = JoinSurrogates(inText[i], inText[i + 1]); // the text is well-formed
            ++i;
        }
        text += static_cast<wchar_t>(value);
    }
    return text;
}

} // namespace

UTF16String Utf16(std::string_view inText) {
    Replacements ignored;
    return DecodeWholeUTF8(reinterpret_cast<std::uint8_t const*>(inText.data()), inText.size(),
                           ignored);
}

UTF16String Utf16(UTF8String const& inText) {
    return Utf16(View(inText));
}

UTF16String Utf16(std::u16string_view inText) {
    return WellFormed(CopyUnits<UTF16String>(inText));
}

UTF16String Utf16(std::wstring_view inText) {
    if constexpr (kWideIsUTF16) {
        return WellFormed(CopyUnits<UTF16String>(inText));
    } else {
        return FromCodePoints(inText);
    }
}

UTF8String Utf8(std::string_view inText) {
    return UTF8String(inText.begin(), inText.end());
}

UTF8String Utf8(UTF16String const& inText) {
    auto const text = WellFormed(inText);
    UTF8String result;
    // `UTF16to8` stops at each NUL.
    for (std::size_t at = 0;; ++at) {
        result += UTF16to8(text.c_str() + at);
        at = text.find(std::uint16_t{0}, at);
        if (at == UTF16String::npos) {
            return result;
        }
        result += std::uint8_t{0};
    }
}

UTF8String Utf8(std::u16string_view inText) {
    return Utf8(CopyUnits<UTF16String>(inText));
}

UTF8String Utf8(std::wstring_view inText) {
    return Utf8(Utf16(inText));
}

std::string ToStd(UTF8String const& inText) {
    return std::string(View(inText));
}

std::string ToStd(UTF16String const& inText) {
    return ToStd(Utf8(inText));
}

std::u16string ToStdUtf16(UTF16String const& inText) {
    return CopyUnits<std::u16string>(inText);
}

std::wstring ToStdWide(UTF16String const& inText) {
    if constexpr (kWideIsUTF16) {
        return CopyUnits<std::wstring>(inText);
    } else {
        return ToCodePoints(WellFormed(inText));
    }
}

} // namespace brindle::utility
