#pragma once

#include <brindle/proplist/PropList.h>

#include <ostream>
#include <string>
#include <vector>

namespace brindle::host {

// A property list as text, of which a line tells one fact: a path, a tab, a type, a tab, a value.
// The path is the keys on the way, with "/" between them; behind that of an array's element stands
// its index, "[0]". Backslashes and control characters are escaped wherever they stand, "/" and "["
// in keys, so that a line stays a line and a path tells one property alone.

/// A key as a part of a path.
std::string EscapedKey(UTF8String const& inKey);

/// The value under a key, alone: a scalar as it is, or the elements of an array one after another,
/// escaped. Nothing for a nested list.
std::vector<std::string> ValueTexts(proplist::PropList const& inList, UTF8String const& inKey);

/// Writes a line for each scalar and each element of an array, in the order of the keys, and one
/// without a value for each nested list and array that is empty. Lists may be nested to any depth.
/// Ends early if the stream fails.
void WriteLines(proplist::PropList const& inList, std::ostream& outStream);

} // namespace brindle::host
