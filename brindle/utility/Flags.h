#pragma once

#include <type_traits>

namespace brindle::utility {

/// A set of bit flags as wide as the unsigned integer type `Bits`. Pass it by value.
///
/// Beside the standard library: as a `std::bitset` of the width of `Bits`, made of plain constants;
/// `Value` is its `to_ulong`. Compared and not ordered.
template <typename Bits>
class Flags {
    static_assert(std::is_unsigned<Bits>::value, "flags are stored in an unsigned integer");

public:
    constexpr Flags() noexcept = default;
    /// Implicit, so that a plain number can be passed where flags are expected.
    constexpr Flags(Bits inBits) noexcept : mBits(inBits) {}

    [[nodiscard]] constexpr Bits Value() const noexcept { return mBits; } ///< all bits as a number

    /// True if any of the bits of `inBits` is set.
    [[nodiscard]] constexpr bool Has(Bits inBits) const noexcept { return (mBits & inBits) != 0; }

    /// The flags of both.
    friend constexpr Flags operator|(Flags inLHS, Flags inRHS) noexcept {
        return Flags(static_cast<Bits>(inLHS.mBits | inRHS.mBits));
    }
    /// True if all bits are the same.
    friend constexpr bool operator==(Flags inLHS, Flags inRHS) noexcept {
        return inLHS.mBits == inRHS.mBits;
    }
    friend constexpr bool operator!=(Flags inLHS, Flags inRHS) noexcept {
        return !(inLHS == inRHS);
    }

private:
    Bits mBits = 0;
};

} // namespace brindle::utility
