#pragma once

#include <brindle/proplist/PropList.h>
#include <brindle/utility/TextTypes.h>

/// Whether a reader would give back everything that a document was written from.
namespace brindle::proplist::impl {

/// True if the document is UTF-8, of characters that XML permits. A carriage return counts as not
/// permitted, because a reader turns it into a line feed.
[[nodiscard]] bool HasOnlyXMLCharacters(UTF8String const& inDocument) noexcept;

/// True if a UTF-16 text of the list, or of a list nested in it, contains a NUL. Conversion to
/// UTF-8 ends there, so the document lacks the rest and does not show it.
[[nodiscard]] bool HasTextWithNul(PropList const& inList);

} // namespace brindle::proplist::impl
