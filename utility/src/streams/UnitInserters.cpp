#include <brindle/utility/UnitInserters.h>

#include <brindle/utility/TextConversions.h>

#include <string>
#include <string_view>

namespace brindle::utility::impl {

namespace {

using Units = std::basic_string_view<std::uint16_t>;
using OutStream = std::basic_ostream<std::uint16_t>;
using InStream = std::basic_istream<std::uint16_t>;

#ifdef __GLIBCXX__

template <typename Quoted>
OutStream& Insert(OutStream& ioStream, Quoted const& inQuoted) {
    UTF16String text(1, inQuoted._M_delim);
    for (std::uint16_t const unit : Units(inQuoted._M_string)) {
        if (unit == inQuoted._M_delim || unit == inQuoted._M_escape) {
            text += inQuoted._M_escape;
        }
        text += unit;
    }
    text += inQuoted._M_delim;
    return ioStream << text;
}

InStream& Extract(InStream& ioStream, UTF16String& outText, std::uint16_t inDelimiter,
                  std::uint16_t inEscape) {
    if ((ioStream.flags() & std::ios_base::skipws) != 0) {
        ioStream >> std::ws;
    }
    std::uint16_t unit = 0;
    if (!ioStream.get(unit)) {
        return ioStream;
    }
    if (unit != inDelimiter) {
        ioStream.unget();
        return ioStream >> outText;
    }
    outText.clear();
    while (ioStream.get(unit) && unit != inDelimiter) {
        if (unit != inEscape || ioStream.get(unit)) {
            outText += unit;
        }
    }
    return ioStream;
}

#endif

} // namespace

} // namespace brindle::utility::impl

namespace std {

using namespace brindle::utility::impl;

template <>
basic_ostream<uint16_t>& operator<<(basic_ostream<uint16_t>& ioStream, char inCharacter) {
    uint16_t const unit = ioStream.widen(inCharacter);
    return ioStream << basic_string_view<uint16_t>(&unit, 1);
}

basic_ostream<uint16_t>& operator<<(basic_ostream<uint16_t>& ioStream, char16_t inUnit) {
    uint16_t const unit = inUnit;
    return ioStream << basic_string_view<uint16_t>(&unit, 1);
}

basic_ostream<uint16_t>& operator<<(basic_ostream<uint16_t>& ioStream, char16_t const* inText) {
    if (inText == nullptr) {
        ioStream.setstate(ios_base::badbit);
        return ioStream;
    }
    u16string_view const text(inText);
    return ioStream << brindle::UTF16String(text.begin(), text.end());
}

basic_ostream<uint16_t>& operator<<(basic_ostream<uint16_t>& ioStream,
                                    brindle::UTF8String const& inText) {
    return ioStream << brindle::utility::Utf16(inText);
}

basic_ostream<uint16_t>& operator<<(basic_ostream<uint16_t>& ioStream, string_view inText) {
    return ioStream << brindle::utility::Utf16(inText);
}

basic_ostream<uint16_t>& operator<<(basic_ostream<uint16_t>& ioStream, u16string_view inText) {
    return ioStream << brindle::utility::Utf16(inText);
}

basic_ostream<uint8_t>& operator<<(basic_ostream<uint8_t>& ioStream,
                                   brindle::UTF16String const& inText) {
    return ioStream << brindle::utility::Utf8(inText);
}

basic_ostream<uint8_t>& operator<<(basic_ostream<uint8_t>& ioStream, string_view inText) {
    return ioStream << brindle::utility::Utf8(inText);
}

#ifdef __GLIBCXX__

basic_ostream<uint16_t>& operator<<(basic_ostream<uint16_t>& ioStream,
                                    QuotedPointer const& inText) {
    return Insert(ioStream, inText);
}

basic_ostream<uint16_t>& operator<<(basic_ostream<uint16_t>& ioStream, QuotedView const& inText) {
    return Insert(ioStream, inText);
}

basic_ostream<uint16_t>& operator<<(basic_ostream<uint16_t>& ioStream, QuotedString const& inText) {
    return Insert(ioStream, inText);
}

basic_ostream<uint16_t>& operator<<(basic_ostream<uint16_t>& ioStream,
                                    QuotedVariable const& inText) {
    return Insert(ioStream, inText);
}

basic_istream<uint16_t>& operator>>(basic_istream<uint16_t>& ioStream,
                                    QuotedVariable const& outText) {
    return Extract(ioStream, outText._M_string, outText._M_delim, outText._M_escape);
}

#endif

} // namespace std
