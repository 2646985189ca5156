#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

#include <cstdint>
#include <optional>

/// Numbers from texts that may be none:
///
///     if (auto const count = utility::ParseInteger(field.Text())) { Repeat(*count); }
///
/// Unlike `StringToNumber`, these functions take the whole text, except for white space around it,
/// or nothing. Full-width digits and signs count as their ASCII forms. Any thread may call, and
/// only the allocator can throw.
namespace brindle::utility {

/// How a number is written: with "." before the fraction and without separators of groups, or as
/// the user writes it, by the separators of the user's locale.
enum class NumberForm : std::uint8_t {
    kNeutral, ///< the same everywhere, for program logic and files
    kUser     ///< by the user's locale, for fields and labels
};

/// An optional sign and decimal digits. Nothing if there is anything else, or if the number does
/// not fit.
[[nodiscard]] BRN_API std::optional<std::int64_t> ParseInteger(UTF16String const& inText);
/// The same; in the user's form separators of groups may stand between digits.
[[nodiscard]] BRN_API std::optional<std::int64_t> ParseInteger(UTF16String const& inText,
                                                               NumberForm inForm);

/// A sign, digits with or without a fraction, and an exponent, of which only the digits must be
/// there. Nothing if there is anything else, "inf" and "nan" among them, or if the magnitude is
/// beyond the range of a double. In the user's form separators of groups may stand between digits
/// of the integer.
[[nodiscard]] BRN_API std::optional<double> ParseNumber(UTF16String const& inText,
                                                        NumberForm inForm = NumberForm::kNeutral);

} // namespace brindle::utility
