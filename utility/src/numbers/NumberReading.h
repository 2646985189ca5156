#pragma once

#include "platform/Locale.h"

#include <cstdint>
#include <optional>

// The pieces of number parsing that work on ranges of units, for all who read numbers.

namespace brindle::utility {

/// A full-width form of "!" to "?", or an ideographic comma or full stop, as ASCII; any other unit
/// as it is.
std::uint16_t ToNarrowForm(std::uint16_t inUnit) noexcept;

/// A unit of the user's form as one of the neutral form.
std::uint16_t ToNeutralForm(std::uint16_t inUnit, platform::NumberSeparators inUser) noexcept;

/// `StringToNumber` of a range: in the user's form with the separators `inUser`, in the neutral
/// form without.
double ReadNumber(std::uint16_t const* inBegin, std::uint16_t const* inEnd,
                  std::optional<platform::NumberSeparators> inUser);

} // namespace brindle::utility
