#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

#include <cstddef>
#include <vector>

/// What programs do with text that users and files give them. Texts that are not well-formed are
/// handled unit by unit. Any thread may call, and only the allocator can throw.
namespace brindle::utility {

/// True for the units of Unicode's white space, line ends among them.
[[nodiscard]] BRN_API bool IsWhiteSpace(std::uint16_t inUnit) noexcept;

/// The text without the white space at both ends.
[[nodiscard]] BRN_API UTF16String Trim(UTF16String const& inText);

/// The lines of the text without their ends, which are CR LF, CR or LF. What follows the last line
/// end is a line if it is not empty, so that an empty text has no lines.
[[nodiscard]] BRN_API std::vector<UTF16String> Lines(UTF16String const& inText);

/// The words of the text: what is between white space.
[[nodiscard]] BRN_API std::vector<UTF16String> Words(UTF16String const& inText);

/// Compare unit by unit, without regard to canonical equivalence. Every text starts and ends with
/// the empty one.
[[nodiscard]] BRN_API bool StartsWith(UTF16String const& inText,
                                      UTF16String const& inStart) noexcept;
[[nodiscard]] BRN_API bool EndsWith(UTF16String const& inText, UTF16String const& inEnd) noexcept;

/// As `StartsWith` for both texts after `FoldCase`.
[[nodiscard]] BRN_API bool StartsWithIgnoringCase(UTF16String const& inText,
                                                  UTF16String const& inStart);

/// Compares names as people sort them: digits by the number that they form, so that "clip 9" comes
/// before "clip 10", and letters without regard to case. Only texts that are equal have the result
/// 0. Returns a number below, equal to or above 0. Numbers have any number of digits "0" to "9".
[[nodiscard]] BRN_API int CompareNatural(UTF16String const& inLeft, UTF16String const& inRight);

/// Orders a container by `CompareNatural`.
///
/// Beside the standard library: a comparison for `std::map`, `std::set` and `std::sort`, as
/// `std::less` is.
struct NaturalLess {
    /// The order of `CompareNatural`.
    [[nodiscard]] bool operator()(UTF16String const& inLeft, UTF16String const& inRight) const {
        return CompareNatural(inLeft, inRight) < 0;
    }
};

/// Hashes texts of both types for unordered containers, for which the standard library has no hash:
///
///     std::unordered_map<UTF16String, Clip, utility::TextHash> clips;
struct TextHash {
    /// Equal texts have equal hashes within one run of a program; do not store them.
    [[nodiscard]] BRN_API std::size_t operator()(UTF16String const& inText) const noexcept;
    [[nodiscard]] BRN_API std::size_t operator()(UTF8String const& inText) const noexcept;
};

} // namespace brindle::utility
