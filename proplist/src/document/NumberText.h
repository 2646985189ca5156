#pragma once

#include <brindle/utility/TextTypes.h>

namespace brindle::proplist::impl {

/// What a stream of the classic locale extracts from the text into a number that is 0 before: a
/// number is read as far as it goes, blanks before it are skipped, one out of the range becomes the
/// nearest that is in it, and what is no number stays 0. Instantiated for the number types of a
/// list.
template <typename T>
T ExtractNumber(UTF16String const& inText);

} // namespace brindle::proplist::impl
