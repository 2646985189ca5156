#pragma once

#include <brindle/proplist/PropList.h>

#include <ostream>
#include <string>
#include <vector>

namespace brindle::host {

// A property list as text with one line for each value: a path, a tab, a type, a tab, the value. A
// path is the keys on the way with "/" between them; the path of an element of an array ends with
// its index, "[0]". Backslashes and control characters are escaped everywhere, and "/" and "[" in
// keys, so that a value never breaks its line and every path is unambiguous.

/// A key as it is written in a path.
std::string EscapedKey(UTF8String const& inKey);

/// The value of a key as it is: one text for a scalar, or one for each element of an array. Empty
/// for a nested list.
std::vector<std::string> ValueTexts(proplist::PropList const& inList, UTF8String const& inKey);

/// Writes a line for each scalar and each element of an array, in the order of the keys, and a line
/// without a value for each empty list and empty array. Lists may be nested to any depth. Stops
/// when the stream fails.
void WriteLines(proplist::PropList const& inList, std::ostream& outStream);

} // namespace brindle::host
