#pragma once

#include <brindle/Export.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>

namespace brindle {

/// Text in UTF-16: one element is one code unit, so a surrogate pair is two elements. Units compare
/// as unsigned numbers. There is no normalisation and no byte-order mark.
using UTF16String = std::basic_string<std::uint16_t>;

/// Text in UTF-8: one element is one byte. Streams, XML and files take text in this form.
using UTF8String = std::basic_string<std::uint8_t>;

inline namespace literals {

/// `u"text"_utf16` is a `UTF16String`. A NUL inside the literal is kept.
[[nodiscard]] inline UTF16String operator""_utf16(char16_t const* inText, std::size_t inLength) {
    return UTF16String(inText, inText + inLength);
}

/// `"text"_utf16`, a literal in UTF-8, is a `UTF16String` as well. It ends before the first byte
/// that is malformed.
[[nodiscard]] BRN_API UTF16String operator""_utf16(char const* inText, std::size_t inLength);

/// `"text"_utf8` is a `UTF8String` of the literal's bytes. A NUL inside the literal is kept.
[[nodiscard]] inline UTF8String operator""_utf8(char const* inText, std::size_t inLength) {
    return UTF8String(inText, inText + inLength);
}

} // namespace literals

} // namespace brindle

// Comparison with literals and with text of the standard library, and output. The operators are in
// namespace std, because that is the only namespace that is searched for the operands' types. What
// is deleted would otherwise be an error in the templates of the standard library.

namespace std {

/// Compares unit by unit.
inline bool operator==(brindle::UTF16String const& inLeft, std::u16string_view inRight) noexcept {
    return std::equal(inLeft.begin(), inLeft.end(), inRight.begin(), inRight.end());
}
inline bool operator==(std::u16string_view inLeft, brindle::UTF16String const& inRight) noexcept {
    return inRight == inLeft;
}
inline bool operator!=(brindle::UTF16String const& inLeft, std::u16string_view inRight) noexcept {
    return !(inLeft == inRight);
}
inline bool operator!=(std::u16string_view inLeft, brindle::UTF16String const& inRight) noexcept {
    return !(inRight == inLeft);
}

/// Compares byte by byte.
inline bool operator==(brindle::UTF8String const& inLeft, std::string_view inRight) noexcept {
    auto const* const bytes = reinterpret_cast<char const*>(inLeft.data());
    return std::string_view(bytes, inLeft.size()) == inRight;
}
inline bool operator==(std::string_view inLeft, brindle::UTF8String const& inRight) noexcept {
    return inRight == inLeft;
}
inline bool operator!=(brindle::UTF8String const& inLeft, std::string_view inRight) noexcept {
    return !(inLeft == inRight);
}
inline bool operator!=(std::string_view inLeft, brindle::UTF8String const& inRight) noexcept {
    return !(inRight == inLeft);
}

/// Compare with `u"text"`, or convert one of them (brindle/utility/TextConversions.h).
bool operator==(brindle::UTF16String const&, std::string_view) = delete;
bool operator==(std::string_view, brindle::UTF16String const&) = delete;
bool operator==(brindle::UTF16String const&, brindle::UTF8String const&) = delete;
bool operator==(brindle::UTF8String const&, brindle::UTF16String const&) = delete;
bool operator==(brindle::UTF8String const&, std::u16string_view) = delete;
bool operator==(std::u16string_view, brindle::UTF8String const&) = delete;

/// Insert the text as UTF-8, as a `std::string` would be.
BRN_API std::ostream& operator<<(std::ostream& ioStream, brindle::UTF16String const& inText);
BRN_API std::ostream& operator<<(std::ostream& ioStream, brindle::UTF8String const& inText);

} // namespace std
