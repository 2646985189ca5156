#pragma once

#include <brindle/utility/TextTypes.h>

namespace brindle::proplist::impl {

/// The number that a stream of the classic locale extracts from the text into a variable that is 0:
/// leading blanks are skipped, the number is read as far as it goes, a number out of the range
/// becomes the nearest one in it, and any other text gives 0. Instantiated for the number types of
/// properties.
template <typename T>
T ExtractNumber(UTF16String const& inText);

} // namespace brindle::proplist::impl
