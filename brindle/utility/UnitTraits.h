#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>

// The standard's character traits for the units of the library's text types. libstdc++ has them,
// and so has libc++ before version 19; for later versions they are defined here. A program that
// defines them itself cannot be linked with this library there.

#if defined(_LIBCPP_VERSION) && _LIBCPP_VERSION >= 190000

namespace brindle::utility::impl {

/// As libc++ defined them up to version 18.
template <typename Unit>
struct UnitTraits {
    using char_type = Unit;
    using int_type = int;
    using off_type = std::streamoff;
    using pos_type = std::streampos;
    using state_type = std::mbstate_t;

    static constexpr void assign(Unit& outUnit, Unit const& inUnit) noexcept { outUnit = inUnit; }
    static constexpr bool eq(Unit inLeft, Unit inRight) noexcept { return inLeft == inRight; }
    static constexpr bool lt(Unit inLeft, Unit inRight) noexcept { return inLeft < inRight; }

    static constexpr int compare(Unit const* inLeft, Unit const* inRight, std::size_t inLength) {
        for (; inLength != 0; --inLength, ++inLeft, ++inRight) {
            if (*inLeft != *inRight) {
                return *inLeft < *inRight ? -1 : 1;
            }
        }
        return 0;
    }
    static constexpr std::size_t length(Unit const* inText) {
        std::size_t length = 0;
        while (inText[length] != Unit()) {
            ++length;
        }
        return length;
    }
    static constexpr Unit const* find(Unit const* inText, std::size_t inLength,
                                      Unit const& inUnit) {
        for (; inLength != 0; --inLength, ++inText) {
            if (*inText == inUnit) {
                return inText;
            }
        }
        return nullptr;
    }
    static constexpr Unit* move(Unit* outText, Unit const* inText, std::size_t inLength) {
        __builtin_memmove(outText, inText, inLength * sizeof(Unit));
        return outText;
    }
    static constexpr Unit* copy(Unit* outText, Unit const* inText, std::size_t inLength) {
        __builtin_memcpy(outText, inText, inLength * sizeof(Unit));
        return outText;
    }
    static constexpr Unit* assign(Unit* outText, std::size_t inLength, Unit inUnit) {
        for (std::size_t i = 0; i < inLength; ++i) {
            outText[i] = inUnit;
        }
        return outText;
    }

    static constexpr int_type eof() noexcept { return -1; }
    static constexpr int_type not_eof(int_type inValue) noexcept {
        return inValue == eof() ? 0 : inValue;
    }
    static constexpr Unit to_char_type(int_type inValue) noexcept {
        return static_cast<Unit>(inValue);
    }
    static constexpr int_type to_int_type(Unit inUnit) noexcept { return inUnit; }
    static constexpr bool eq_int_type(int_type inLeft, int_type inRight) noexcept {
        return inLeft == inRight;
    }
};

} // namespace brindle::utility::impl

namespace std {

template <>
struct char_traits<std::uint16_t> : brindle::utility::impl::UnitTraits<std::uint16_t> {};
template <>
struct char_traits<std::uint8_t> : brindle::utility::impl::UnitTraits<std::uint8_t> {};

} // namespace std

#endif
