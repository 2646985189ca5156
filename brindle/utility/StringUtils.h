#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

#include <cstdint>

/// @file
/// Functions on UTF-16 text. All accept any text, well-formed or not, all may be called on any
/// thread, and only the allocator can throw. Several arguments may be one and the same object.

namespace brindle::utility {

/// How the lines of a text end.
enum LineEndingType : std::int32_t {
    kLineEnding_CRLF = 0, ///< U+000D U+000A
    kLineEnding_CR = 1,   ///< U+000D
    kLineEnding_LF = 2    ///< U+000A
};

/// Replaces every occurrence of `inFind`, from left to right. Inserted text is not searched again,
/// and an empty `inFind` occurs nowhere. Takes time linear in the lengths of the texts.
BRN_API void ReplaceAllStringInString(UTF16String& ioText, UTF16String const& inFind,
                                      UTF16String const& inReplacement);

/// Expands placeholders in `inPattern`: `@0` to `@9` become the argument of that number, `@@`
/// becomes `@`, and any other `@` stays as it is.
[[nodiscard]] BRN_API UTF16String ReplaceInString(UTF16String const& inPattern,
                                                  UTF16String const& in0, UTF16String const& in1,
                                                  UTF16String const& in2, UTF16String const& in3,
                                                  UTF16String const& in4, UTF16String const& in5,
                                                  UTF16String const& in6, UTF16String const& in7,
                                                  UTF16String const& in8, UTF16String const& in9);
/// The same with fewer arguments; those that are left out are empty.
[[nodiscard]] inline UTF16String
ReplaceInString(UTF16String const& inPattern, UTF16String const& in0, UTF16String const& in1 = {},
                UTF16String const& in2 = {}, UTF16String const& in3 = {},
                UTF16String const& in4 = {}, UTF16String const& in5 = {},
                UTF16String const& in6 = {}, UTF16String const& in7 = {},
                UTF16String const& in8 = {}) {
    return ReplaceInString(inPattern, in0, in1, in2, in3, in4, in5, in6, in7, in8, {});
}

/// The units of a line ending. Empty for a value that is no enumerator.
[[nodiscard]] BRN_API UTF16String GetLineEnding(LineEndingType inType);

/// Replaces every line ending (CR LF, CR or LF) by that of `inType`. A text in which nothing
/// changes is not reallocated. A value that is no enumerator removes the endings, except from a
/// text that consists of endings only, which stays as it is.
BRN_API void ConvertLineEndings(LineEndingType inType, UTF16String& ioText);

/// Converts the text to upper case and then removes everything but hexadecimal digits. Because the
/// conversion comes first, the ligature U+FB00 gives "FF".
BRN_API void ValidateForHex(UTF16String& ioText);

/// Maps texts that differ only in case to one text. All sigmas fold to U+03C2, and the dotted and
/// the dotless i fold to "i".
///
/// The three case conversions map each unit by itself, by a frozen table of 1446 units with the
/// full mappings of Unicode, so the result may be longer than the text (the upper case of U+00DF is
/// "SS"). They depend on neither language nor context, and they leave characters outside the Basic
/// Multilingual Plane as they are.
[[nodiscard]] BRN_API UTF16String FoldCase(UTF16String const& inText);
[[nodiscard]] BRN_API UTF16String UpperCase(UTF16String const& inText);
[[nodiscard]] BRN_API UTF16String LowerCase(UTF16String const& inText);

/// The same in place. A text that does not grow is not reallocated. If the memory for a growing
/// text cannot be had, the units before the first one that grows have already been converted.
BRN_API void ToFoldCase(UTF16String& ioText);
BRN_API void ToUpperCase(UTF16String& ioText);
BRN_API void ToLowerCase(UTF16String& ioText);

/// Replaces a full-width form of `!` to `?` (U+FF01..U+FF1F), which includes the digits, by its
/// ASCII form. Returns true if the unit changed.
BRN_API bool ToNumericCase(std::uint16_t& ioUnit) noexcept;

/// The same for every unit of the text. Returns true if any unit changed.
BRN_API bool ToNumericCase(UTF16String& ioText) noexcept;

} // namespace brindle::utility
