#pragma once

#include <brindle/Export.h>
#include <brindle/utility/Flags.h>
#include <brindle/utility/TextTypes.h>

#include <cstdint>
#include <type_traits>

/// Numbers as text, in two forms. The neutral form, for program logic, has "." before the fraction
/// and "," between groups of three digits. The user's form has the separators of the user's locale,
/// which are read once, when they are first needed:
///
///     label = NumberToString(1234.5, 1, 2, kNumberFormat_Group); // "1.234,50" for a German
///     double const value = StringToNumber(label, 0);             // 1234.5
///
/// A text that is not a number reads as 0. Nothing here fails, and only the allocator can throw.
/// Any thread may call.
namespace brindle::utility {

/// Bits for `NumberToString` of a double.
enum NumberFormat : std::uint16_t {
    kNumberFormat_NoInternationalize = 0x01, ///< the result is in the neutral form
    kNumberFormat_PadWithSpaces = 0x02,      ///< missing integer digits are spaces, not zeros
    kNumberFormat_TrimZeros = 0x04,          ///< no zeros at the end of the fraction, and no "."
                                             ///< without a digit behind it
    kNumberFormat_Group = 0x08,              ///< integer digits in groups of three
    kNumberFormat_ForcePlus = 0x10,          ///< "+" before a value that is not negative
    kNumberFormat_SpaceForPlus = 0x20,       ///< a space before a value that is not negative;
                                             ///< ignored with `kNumberFormat_ForcePlus`
    kNumberFormat_NoPlusOnZero = 0x40        ///< no "+" before an exact zero; matters only with
                                             ///< `kNumberFormat_ForcePlus`
};

/// Bits for `StringToNumber`; it ignores all others.
enum NumberParse : std::uint16_t {
    kNumberParse_NoDeInternationalize = 0x02 ///< the text is in the neutral form
};

/// Decimal digits without separators, with "-" in front of a negative number.
[[nodiscard]] BRN_API UTF16String NumberToString(std::int32_t inValue);
[[nodiscard]] BRN_API UTF16String NumberToString(std::int64_t inValue);
[[nodiscard]] BRN_API UTF16String NumberToString(std::uint64_t inValue);

/// The same for every other integer type, `long long` and `std::size_t` among them.
template <typename Integer, std::enable_if_t<std::is_integral_v<Integer>, int> = 0>
[[nodiscard]] UTF16String NumberToString(Integer inValue) {
    using Wide = std::conditional_t<std::is_signed_v<Integer>, std::int64_t, std::uint64_t>;
    return NumberToString(static_cast<Wide>(inValue));
}

/// An integer of up to 64 bits, exactly, in the user's form or the neutral one. Of the flags,
/// padding and trimming do not apply:
///
///     label = NumberToString(bytes, kNumberFormat_Group); // "9,223,372,036,854,775,807"
///
/// `ParseInteger` reads it.
[[nodiscard]] BRN_API UTF16String NumberToString(std::int64_t inValue,
                                                 Flags<std::uint16_t> inFlags);
[[nodiscard]] BRN_API UTF16String NumberToString(std::uint64_t inValue,
                                                 Flags<std::uint16_t> inFlags);
template <typename Integer, std::enable_if_t<std::is_integral_v<Integer>, int> = 0>
[[nodiscard]] UTF16String NumberToString(Integer inValue, Flags<std::uint16_t> inFlags) {
    using Wide = std::conditional_t<std::is_signed_v<Integer>, std::int64_t, std::uint64_t>;
    return NumberToString(static_cast<Wide>(inValue), inFlags);
}

/// Characters are no numbers.
UTF16String NumberToString(char) = delete;
UTF16String NumberToString(wchar_t) = delete;
UTF16String NumberToString(char16_t) = delete;
UTF16String NumberToString(char32_t) = delete;
UTF16String NumberToString(char, Flags<std::uint16_t>) = delete;
UTF16String NumberToString(wchar_t, Flags<std::uint16_t>) = delete;
UTF16String NumberToString(char16_t, Flags<std::uint16_t>) = delete;
UTF16String NumberToString(char32_t, Flags<std::uint16_t>) = delete;

/// Capital hexadecimal digits of the 32 bits, without prefix or leading zeros.
[[nodiscard]] BRN_API UTF16String NumberToHexString(std::int32_t inValue);

/// At least one integer digit and two decimals, in the user's form.
[[nodiscard]] BRN_API UTF16String NumberToString(double inValue);

/// At least `inMinIntegerDigits` digits, then a "." and `inDecimals` digits, 0 to 60.
///
/// The decimals are those of the exact value, rounded to nearest, ties to even; with 0 decimals
/// ties are rounded up in magnitude. A value whose fixed form has more than 22 characters, or that
/// rounds to 2147483648 or more with 0 decimals, gets six decimals and an exponent instead, as in
/// "3.000000e+09", and is not padded, grouped or trimmed. The sign is that of the value before
/// rounding; -0.0 has none. Infinity is "inf", a NaN "nan" or "-nan". A negative `inDecimals`
/// counts as six.
[[nodiscard]] BRN_API UTF16String NumberToString(double inValue, int inMinIntegerDigits,
                                                 int inDecimals, Flags<std::uint16_t> inFlags);
/// The same in the neutral form: "1234.50" for (1234.5, 1, 2).
[[nodiscard]] inline UTF16String NumberToString(double inValue, int inMinIntegerDigits,
                                                int inDecimals) {
    return NumberToString(inValue, inMinIntegerDigits, inDecimals, Flags<std::uint16_t>());
}

/// The number at the front of the text, after white space; 0 if there is none or its magnitude is
/// beyond the range of a double. Thousands separators are skipped wherever they stand. "1e3" is a
/// number, "1e" is not. Full-width characters count as their ASCII forms.
[[nodiscard]] BRN_API double StringToNumber(UTF16String const& inText,
                                            Flags<std::uint16_t> inFlags);

/// From the neutral form to the user's: every "." or "," in front of a digit becomes the user's
/// decimal or thousands separator.
BRN_API void InternationalizeNum(UTF16String& ioText);

/// From the user's form to the neutral one. Full-width forms of "!" to "?" become ASCII, and the
/// ideographic comma and full stop become "," and "."; after that, the user's separators become "."
/// and ",". If both separators are the same unit, it becomes ".".
BRN_API void DeInternationalizeNum(UTF16String& ioText);

} // namespace brindle::utility
