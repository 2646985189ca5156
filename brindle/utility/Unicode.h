#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

namespace brindle::utility {

/// The kinds of UTF-16 code units.
enum UnicodeSurrogateT {
    kSurrogate_None = 0, ///< outside U+D800..U+DFFF
    kSurrogate_High = 1, ///< U+D800..U+DBFF, the first unit of a pair
    kSurrogate_Low = 2   ///< U+DC00..U+DFFF, the second unit of a pair
};

/// Converts UTF-16 to UTF-8 up to the first NUL. A text of one to three units keeps its length: a
/// NUL in it, and everything behind the NUL, becomes zero bytes.
///
///     UTF8String const name = utility::UTF16to8(u"caf\u00E9"_utf16);
///     UTF16String const same = utility::UTF8to16(name);
///
/// A surrogate without its partner becomes the three-byte form of its value, so every text without
/// NUL survives the way to UTF-8 and back. Like all conversions, this is a pure function that any
/// thread may call; only the allocator can throw.
[[nodiscard]] BRN_API UTF8String UTF16to8(UTF16String const& inText);

/// The same for NUL-terminated text. `inText` is not null.
[[nodiscard]] BRN_API UTF8String UTF16to8(std::uint16_t const* inText);

/// Converts UTF-8 to UTF-16 up to the first malformed or incomplete sequence. The three-byte form
/// of a surrogate becomes that surrogate, and NUL is text like any other.
[[nodiscard]] BRN_API UTF16String UTF8to16(UTF8String const& inText);

/// The same for a NUL-terminated literal, which is read as UTF-8. `inText` is not null.
[[nodiscard]] BRN_API UTF16String AsciiToUTF16(char const* inText);

/// The same bytes as a pointer of the other type, without a copy or a check.
[[nodiscard]] inline unsigned char const* AsciiToUTF8Impl(char const* inText) noexcept {
    return reinterpret_cast<unsigned char const*>(inText);
}

/// The kind of one code unit.
[[nodiscard]] constexpr UnicodeSurrogateT UnicodeSurrogate(std::uint16_t inUnit) noexcept {
    return (inUnit & 0xF800) != 0xD800 ? kSurrogate_None
           : (inUnit & 0x0400) == 0    ? kSurrogate_High
                                       : kSurrogate_Low;
}

} // namespace brindle::utility
