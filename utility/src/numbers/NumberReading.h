#pragma once

#include "platform/Locale.h"

#include <brindle/utility/TextTypes.h>

#include <cstdint>
#include <optional>
#include <string>

// Number parsing on ranges of units, which `StringToNumber` and the calculator share.

namespace brindle::utility {

/// The ASCII form of a full-width "!" to "?" or of an ideographic comma or full stop; any other
/// unit itself.
std::uint16_t ToNarrowForm(std::uint16_t inUnit) noexcept;

/// The neutral form of a unit in the user's form.
std::uint16_t ToNeutralForm(std::uint16_t inUnit, platform::NumberSeparators inUser) noexcept;

/// `StringToNumber` of a range, which is in the user's form if there are separators `inUser`, and
/// otherwise in the neutral form.
double ReadNumber(std::uint16_t const* inBegin, std::uint16_t const* inEnd,
                  std::optional<platform::NumberSeparators> inUser);

/// The text without the white space around it, in ASCII and in the neutral form. A unit that has no
/// such form becomes "?", which is in no number.
std::string InNeutralASCII(UTF16String const& inText,
                           std::optional<platform::NumberSeparators> inUser);

/// The number without a sign that is the whole text, in the neutral form, with separators between
/// digits of the integer if `inIsGrouped`.
std::optional<double> WholeNumber(std::string inText, bool inIsGrouped);

} // namespace brindle::utility
