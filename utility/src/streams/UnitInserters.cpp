#include <brindle/utility/UnitInserters.h>

#include <string>
#include <string_view>

namespace brindle::utility {

namespace {

using Units = std::basic_string_view<std::uint16_t>;
using OutStream = std::basic_ostream<std::uint16_t>;
using InStream = std::basic_istream<std::uint16_t>;

OutStream& InsertQuoted(OutStream& ioStream, Units inText, std::uint16_t inDelimiter,
                        std::uint16_t inEscape) {
    UTF16String text(1, inDelimiter);
    for (std::uint16_t const unit : inText) {
        if (unit == inDelimiter || unit == inEscape) {
            text += inEscape;
        }
        text += unit;
    }
    text += inDelimiter;
    return ioStream << text;
}

InStream& ExtractQuoted(InStream& ioStream, UTF16String& outText, std::uint16_t inDelimiter,
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

} // namespace

} // namespace brindle::utility

namespace std {

using brindle::utility::ExtractQuoted;
using brindle::utility::InsertQuoted;

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
                                    decltype(quoted(declval<uint16_t const*>())) const& inQuoted) {
    return InsertQuoted(ioStream, inQuoted._M_string, inQuoted._M_delim, inQuoted._M_escape);
}

basic_ostream<uint16_t>& operator<<(basic_ostream<uint16_t>& ioStream,
                                    decltype(quoted(declval<brindle::UTF16String const&>()))
                                        const& inQuoted) {
    return InsertQuoted(ioStream, inQuoted._M_string, inQuoted._M_delim, inQuoted._M_escape);
}

basic_ostream<uint16_t>& operator<<(basic_ostream<uint16_t>& ioStream,
                                    decltype(quoted(declval<brindle::UTF16String&>()))
                                        const& inQuoted) {
    return InsertQuoted(ioStream, inQuoted._M_string, inQuoted._M_delim, inQuoted._M_escape);
}

basic_ostream<uint16_t>& operator<<(basic_ostream<uint16_t>& ioStream,
                                    decltype(quoted(declval<basic_string_view<uint16_t>>()))
                                        const& inQuoted) {
    return InsertQuoted(ioStream, inQuoted._M_string, inQuoted._M_delim, inQuoted._M_escape);
}

basic_istream<uint16_t>& operator>>(basic_istream<uint16_t>& ioStream,
                                    decltype(quoted(declval<brindle::UTF16String&>()))
                                        const& outQuoted) {
    return ExtractQuoted(ioStream, outQuoted._M_string, outQuoted._M_delim, outQuoted._M_escape);
}

} // namespace std
