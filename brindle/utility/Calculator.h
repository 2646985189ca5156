#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

namespace brindle::utility {

/// The value of what a user types into a numeric field: a number in the user's form, or an
/// expression of numbers, operators and parentheses.
///
/// The operators, from the loosest to the tightest, each level from left to right: "e" or "E" (left
/// times ten to the power of right), "+" and "-", "*", "/" (by 0.0 it gives the dividend), "^"
/// (power). So "1e5+2" is 1e7, "2^3^2" is 64, and as "*" binds looser than "/", "8/2*3" is 12. All
/// other characters are ignored. It never fails: an operand that is missing or cannot be read is
/// 0.0, which makes a leading "-" a negation, and of "*", "/", "^" and "e" with nothing on the left
/// the operator is ignored. Parentheses that do not match, or that enclose as a whole what is
/// parenthesised at both of its ends, as in "((1)+(2))", are not resolved and read as 0.0.
///
/// Time and memory are linear in the length of the text, whatever its depth; the depth of the
/// machine's stack does not matter. Any thread may call; only the allocator can throw.
BRN_API double Calculate(UTF16String inText);

} // namespace brindle::utility
