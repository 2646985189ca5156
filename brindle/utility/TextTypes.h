#pragma once

#include <brindle/Export.h>
#include <brindle/utility/UnitTraits.h>

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <type_traits>

namespace brindle {

/// Text in UTF-16: one element is one code unit, so a surrogate pair is two elements. Units compare
/// as unsigned numbers. There is no normalisation and no byte-order mark.
///
/// Beside the standard library: `std::basic_string`, with all members and algorithms. It differs
/// from `std::u16string` in its unit alone, compares and joins with `u"text"`, and converts by
/// `utility::Utf16` and `utility::ToStdUtf16`. The standard library has no hash for these units;
/// `utility::TextHash` is one.
using UTF16String = std::basic_string<std::uint16_t>;

/// Text in UTF-8: one element is one byte. Streams, XML and files take text in this form. Ordered
/// and hashed as `UTF16String` is.
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

namespace utility::impl {

template <typename T>
inline constexpr bool kNever = false;

template <typename T>
inline constexpr bool kIsWideText = std::is_convertible_v<T, std::wstring_view>;
template <typename T>
inline constexpr bool kIsOtherThanUTF16 =
    kIsWideText<T> || std::is_convertible_v<T, std::string_view> || std::is_same_v<T, UTF8String>;
template <typename T>
inline constexpr bool kIsOtherThanUTF8 =
    kIsWideText<T> || std::is_convertible_v<T, std::u16string_view>;

/// What text of another encoding converts to beside a `UTF16String`, to end the compilation with
/// one readable message instead of a list of templates that do not match.
struct NotUTF16 {
    template <typename Text, std::enable_if_t<kIsOtherThanUTF16<Text>, int> = 0>
    NotUTF16(Text const&) {
        static_assert(kNever<Text>, "UTF-16 text goes with u\"text\"; convert other text by "
                                    "utility::Utf16 of brindle/utility/TextConversions.h");
    }
};

/// The same beside a `UTF8String`.
struct NotUTF8 {
    template <typename Text, std::enable_if_t<kIsOtherThanUTF8<Text>, int> = 0>
    NotUTF8(Text const&) {
        static_assert(kNever<Text>, "UTF-8 text goes with \"text\"; convert other text by "
                                    "utility::Utf8 of brindle/utility/TextConversions.h");
    }
};

} // namespace utility::impl

} // namespace brindle

// Comparison with literals and with text of the standard library, and output. The operators are in
// namespace std, because that is the only namespace that is searched for the operands' types.

namespace std {

/// Compares unit by unit.
inline bool operator==(brindle::UTF16String const& inLeft, std::u16string_view inRight) noexcept {
    std::size_t i = 0;
    while (i < inLeft.size() && i < inRight.size() && inLeft[i] == inRight[i]) {
        ++i;
    }
    return i == inLeft.size() && i == inRight.size();
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

/// Append text of the same encoding.
inline brindle::UTF16String operator+(brindle::UTF16String inLeft, std::u16string_view inRight) {
    return inLeft.append(inRight.begin(), inRight.end());
}
inline brindle::UTF16String operator+(std::u16string_view inLeft,
                                      brindle::UTF16String const& inRight) {
    return brindle::UTF16String(inLeft.begin(), inLeft.end()).append(inRight);
}
inline brindle::UTF8String operator+(brindle::UTF8String inLeft, std::string_view inRight) {
    return inLeft.append(inRight.begin(), inRight.end());
}
inline brindle::UTF8String operator+(std::string_view inLeft, brindle::UTF8String const& inRight) {
    return brindle::UTF8String(inLeft.begin(), inLeft.end()).append(inRight);
}

/// Text of another encoding has to be converted first.
bool operator==(brindle::UTF16String const&, brindle::utility::impl::NotUTF16 const&);
bool operator==(brindle::utility::impl::NotUTF16 const&, brindle::UTF16String const&);
bool operator==(brindle::UTF8String const&, brindle::utility::impl::NotUTF8 const&);
bool operator==(brindle::utility::impl::NotUTF8 const&, brindle::UTF8String const&);
bool operator!=(brindle::UTF16String const&, brindle::utility::impl::NotUTF16 const&);
bool operator!=(brindle::utility::impl::NotUTF16 const&, brindle::UTF16String const&);
bool operator!=(brindle::UTF8String const&, brindle::utility::impl::NotUTF8 const&);
bool operator!=(brindle::utility::impl::NotUTF8 const&, brindle::UTF8String const&);
brindle::UTF16String operator+(brindle::UTF16String const&,
                               brindle::utility::impl::NotUTF16 const&);
brindle::UTF16String operator+(brindle::utility::impl::NotUTF16 const&,
                               brindle::UTF16String const&);
brindle::UTF8String operator+(brindle::UTF8String const&, brindle::utility::impl::NotUTF8 const&);
brindle::UTF8String operator+(brindle::utility::impl::NotUTF8 const&, brindle::UTF8String const&);

/// Insert the text as UTF-8, as a `std::string` would be.
BRN_API std::ostream& operator<<(std::ostream& ioStream, brindle::UTF16String const& inText);
BRN_API std::ostream& operator<<(std::ostream& ioStream, brindle::UTF8String const& inText);

} // namespace std
