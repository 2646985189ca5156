#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

namespace brindle::utility {

/// What one UTF-16 code unit is by itself.
enum UnicodeSurrogateT {
    kSurrogate_None = 0, ///< outside U+D800..U+DFFF
    kSurrogate_High = 1, ///< U+D800..U+DBFF, the first unit of a pair
    kSurrogate_Low = 2   ///< U+DC00..U+DFFF, the second unit of a pair
};

// The conversions never fail: malformed text gives a shorter result. They are pure functions, for
// any thread; only the allocator can throw. Every text without NUL goes to UTF-8 and back
// unchanged, for a surrogate without its partner takes the three-byte form of its value, and comes
// back from it.

/// Converts up to the first NUL. A text of one to three units keeps its length: there a NUL, and
/// what follows it, come out as zero bytes.
BRN_API UTF8String UTF16to8(UTF16String const& inText);

/// Converts NUL-terminated text; `inText` is not null.
BRN_API UTF8String UTF16to8(std::uint16_t const* inText);

/// Converts up to the first malformed or incomplete sequence. NUL is text like any other.
BRN_API UTF16String UTF8to16(UTF8String const& inText);

/// Converts a NUL-terminated literal, read as UTF-8; `inText` is not null.
BRN_API UTF16String AsciiToUTF16(char const* inText);

/// The same bytes under the other type, with no copy and no check.
inline unsigned char const* AsciiToUTF8Impl(char const* inText) noexcept {
    return reinterpret_cast<unsigned char const*>(inText);
}

constexpr UnicodeSurrogateT UnicodeSurrogate(std::uint16_t inUnit) noexcept {
    return (inUnit & 0xF800) != 0xD800 ? kSurrogate_None
           : (inUnit & 0x0400) == 0    ? kSurrogate_High
                                       : kSurrogate_Low;
}

} // namespace brindle::utility
