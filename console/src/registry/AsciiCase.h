#pragma once

namespace brindle::console {

/// The lower case of a letter of ASCII; any other unit as it is. Unlike `std::tolower` it takes
/// every unit, and depends on no locale.
template <typename Unit>
constexpr Unit LowerCased(Unit inUnit) noexcept {
    bool const isUpper = inUnit >= 'A' && inUnit <= 'Z';
    return static_cast<Unit>(isUpper ? inUnit + ('a' - 'A') : inUnit);
}

} // namespace brindle::console
