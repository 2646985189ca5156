#pragma once

#include <brindle/Export.h>
#include <brindle/utility/Flags.h>
#include <brindle/utility/TextTypes.h>

#include <cstdint>

// Numbers as text, in two forms. The neutral form has "." before the fraction and "," between
// groups of three digits; program logic uses it. The user's form has the separators of the user's
// locale, which are read at their first use, once for the process. Text that is no number reads as
// 0; nothing here fails, and only the allocator can throw. Any thread may call.

namespace brindle::utility {

/// Bits for `NumberToString` of a double.
enum NumberFormat : std::uint16_t {
    kNumberFormat_NoInternationalize = 0x01, ///< the result is in the neutral form
    kNumberFormat_PadWithSpaces = 0x02,      ///< missing integer digits are spaces, not zeros
    kNumberFormat_TrimZeros = 0x04,          ///< without zeros at the end of the fraction, and
                                             ///< without a "." that nothing follows
    kNumberFormat_Group = 0x08,              ///< integer digits in groups of three
    kNumberFormat_ForcePlus = 0x10,          ///< "+" before what is not negative
    kNumberFormat_SpaceForPlus = 0x20,       ///< a space before what is not negative; counts only
                                             ///< without `kNumberFormat_ForcePlus`
    kNumberFormat_NoPlusOnZero = 0x40        ///< no sign at all before an exact zero; counts only
                                             ///< with `kNumberFormat_ForcePlus`
};

/// Bits for `StringToNumber`; it ignores all others.
enum NumberParse : std::uint16_t {
    kNumberParse_NoDeInternationalize = 0x02 ///< the text is in the neutral form
};

/// Decimal digits without separators, behind a "-" if negative.
BRN_API UTF16String NumberToString(std::int32_t inValue);
BRN_API UTF16String NumberToString(std::int64_t inValue);

/// Capital hexadecimal digits of the 32 bits, without prefix or leading zeros.
BRN_API UTF16String NumberToHexString(std::int32_t inValue);

/// At least one integer digit and two decimals, in the user's form.
BRN_API UTF16String NumberToString(double inValue);

/// At least `inMinIntegerDigits` digits, then a "." and `inDecimals` digits, 0 to 60.
///
/// Decimals are those of the exact value, rounded to nearest, ties to even; without decimals ties
/// go up in magnitude. What has no fixed form of at most 22 characters, or without decimals rounds
/// to 2147483648 and more, comes with six decimals and an exponent instead ("3.000000e+09"), as it
/// is: not padded, grouped or trimmed. The sign is that of the value before rounding; -0.0 has
/// none. Infinities are "inf", what is not a number is "nan" or "-nan". Fewer than 0 decimals
/// count as six.
BRN_API UTF16String NumberToString(double inValue, int inMinIntegerDigits, int inDecimals,
                                   Flags<std::uint16_t> inFlags);

/// The number that the text begins with, behind white space; 0 if there is none, or if its
/// magnitude is beyond the range of a double. Commas of the neutral form are skipped wherever they
/// stand. "1e3" is a number, "1e" is none. Full-width forms count as their ASCII forms.
BRN_API double StringToNumber(UTF16String const& inText, Flags<std::uint16_t> inFlags);

/// From the neutral form to the user's: every "." or "," that a digit follows becomes the user's
/// decimal or thousands separator.
BRN_API void InternationalizeNum(UTF16String& ioText);

/// From the user's form to the neutral one. First full-width forms of "!" to "?" become ASCII, and
/// the ideographic comma and full stop become "," and "."; then the user's separators become "."
/// and ",". If both are the same unit, it becomes ".".
BRN_API void DeInternationalizeNum(UTF16String& ioText);

} // namespace brindle::utility
