#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

#include <cstdint>

// Functions on UTF-16 text. They are pure, take any text, well-formed or not, and may run on any
// thread; only the allocator can throw. Arguments may be one and the same object.

namespace brindle::utility {

enum LineEndingType : std::int32_t {
    kLineEnding_CRLF = 0, ///< U+000D U+000A
    kLineEnding_CR = 1,   ///< U+000D
    kLineEnding_LF = 2    ///< U+000A
};

/// Replaces every occurrence of `inFind`, from the left; what was inserted is not searched again.
/// An empty `inFind` occurs nowhere. The time is linear in the lengths.
BRN_API void ReplaceAllStringInString(UTF16String& ioText, UTF16String const& inFind,
                                      UTF16String const& inReplacement);

/// Expands `inPattern`: `@0` to `@9` become the argument of that number, `@@` becomes `@`, and any
/// other `@` stays.
BRN_API UTF16String ReplaceInString(UTF16String const& inPattern, UTF16String const& in0,
                                    UTF16String const& in1, UTF16String const& in2,
                                    UTF16String const& in3, UTF16String const& in4,
                                    UTF16String const& in5, UTF16String const& in6,
                                    UTF16String const& in7, UTF16String const& in8,
                                    UTF16String const& in9);

/// The units of a line ending; empty for a value that is no enumerator.
BRN_API UTF16String GetLineEnding(LineEndingType inType);

/// Replaces every line ending, be it CR LF, CR or LF, by that of `inType`. A text in which nothing
/// changes keeps its storage. A value that is no enumerator removes the endings, but leaves alone a
/// text that consists of nothing else.
BRN_API void ConvertLineEndings(LineEndingType inType, UTF16String& ioText);

/// Leaves the hexadecimal digits alone, in upper case, and removes all else. Upper case comes
/// first, so the ligature U+FB00 gives "FF".
BRN_API void ValidateForHex(UTF16String& ioText);

// Case conversion goes unit by unit through a frozen table of 1446 units, with the full mappings of
// Unicode: the result may be longer than the text (U+00DF gives "SS"). It knows neither language
// nor context, and leaves alone what lies outside the Basic Multilingual Plane. Folding makes equal
// what differs in case only: all sigmas fold to U+03C2, and the dotted and the dotless i to "i".

BRN_API UTF16String FoldCase(UTF16String const& inText);
BRN_API UTF16String UpperCase(UTF16String const& inText);
BRN_API UTF16String LowerCase(UTF16String const& inText);

/// In place; text that does not grow keeps its storage. If memory for one that grows runs out, the
/// units before the first that grows are converted already.
BRN_API void ToFoldCase(UTF16String& ioText);
BRN_API void ToUpperCase(UTF16String& ioText);
BRN_API void ToLowerCase(UTF16String& ioText);

/// Turns a full-width form of `!` to `?` (U+FF01..U+FF1F), the digits among them, into its ASCII
/// form; true if the unit changed.
BRN_API bool ToNumericCase(std::uint16_t& ioUnit) noexcept;

/// The same for every unit of the text; true if any changed.
BRN_API bool ToNumericCase(UTF16String& ioText) noexcept;

} // namespace brindle::utility
