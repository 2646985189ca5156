#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

#include <string>
#include <string_view>

/// Text from and to the standard library:
///
///     UTF16String const name = utility::Utf16(argv[1]);
///     std::string const line = utility::ToStd(name);
///
/// Unlike `UTF16to8` and `UTF8to16`, which stop where a text is malformed or has a NUL, these
/// functions convert the whole text: NUL is a character like any other, and whatever is malformed
/// becomes U+FFFD, so that the result is well-formed. Any thread may call, and only the allocator
/// can throw.
namespace brindle::utility {

/// `inText` is UTF-8. A maximal part of a sequence that is cut off or malformed becomes one U+FFFD;
/// a surrogate in UTF-8 becomes three.
[[nodiscard]] BRN_API UTF16String Utf16(std::string_view inText);
[[nodiscard]] BRN_API UTF16String Utf16(UTF8String const& inText);
[[nodiscard]] BRN_API UTF16String Utf16(std::u16string_view inText);
/// A `wchar_t` is a code point, or on systems where it has 16 bits a UTF-16 code unit.
[[nodiscard]] BRN_API UTF16String Utf16(std::wstring_view inText);

/// Copies UTF-8 as it is, without a check.
[[nodiscard]] BRN_API UTF8String Utf8(std::string_view inText);
/// A surrogate without its partner becomes U+FFFD.
[[nodiscard]] BRN_API UTF8String Utf8(UTF16String const& inText);
[[nodiscard]] BRN_API UTF8String Utf8(std::u16string_view inText);
[[nodiscard]] BRN_API UTF8String Utf8(std::wstring_view inText);

/// UTF-8 in a `std::string`.
[[nodiscard]] BRN_API std::string ToStd(UTF8String const& inText);
[[nodiscard]] BRN_API std::string ToStd(UTF16String const& inText);
/// The units as they are.
[[nodiscard]] BRN_API std::u16string ToStdUtf16(UTF16String const& inText);
/// See `Utf16(std::wstring_view)`.
[[nodiscard]] BRN_API std::wstring ToStdWide(UTF16String const& inText);

/// The bytes of the text, without a copy; valid for as long as they are there.
[[nodiscard]] inline std::string_view View(UTF8String const& inText) noexcept {
    return {reinterpret_cast<char const*>(inText.data()), inText.size()};
}

} // namespace brindle::utility
