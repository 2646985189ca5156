#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

#include <optional>

namespace brindle::utility {

/// The value of what a user types into a numeric field: a number in the user's form, or an
/// expression of numbers, operators and parentheses.
///
///     double const width = Calculate(field.Text()); // 640 for "(1,080+200)/2" in the US
///
/// The operators from the loosest to the tightest, all of them left-associative: "e" or "E" (left
/// times ten to the power of right); "+" and "-"; "*"; "/" (division by 0.0 gives the dividend);
/// "^" (power). So "1e5+2" is 1e7, "2^3^2" is 64, and "8/2*3" is 12. All other characters are
/// ignored.
///
/// It never fails. An operand that is missing or cannot be read is 0.0, so that a leading "-" is a
/// negation; a "*", "/", "^" or "e" without a left side is ignored. Parentheses that do not match
/// read as 0.0, and so does a pair around an expression that begins and ends with parentheses
/// itself, as in "((1)+(2))".
///
/// Time and memory are linear in the length of the text, and deep nesting does not use up the
/// stack. Any thread may call; only the allocator can throw.
[[nodiscard]] BRN_API double Calculate(UTF16String inText);

/// The same for a field that shows when it cannot be calculated: nothing if the text is not wholly
/// an expression, if something is divided by zero, or if the result is no finite number.
///
///     field.SetRed(!TryCalculate(field.Text()));
///
/// Numbers are those of `ParseNumber` in the user's form, so that "1e5" is one. The operators are
/// "+", "-", "*", "/" and "^", of which "^" binds tightest and "*" as "/"; signs bind tighter.
/// Parentheses nest as they do in mathematics.
[[nodiscard]] BRN_API std::optional<double> TryCalculate(UTF16String const& inText);

} // namespace brindle::utility
