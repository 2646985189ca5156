#pragma once

#include <cstddef>
#include <cstdint>

namespace brindle::utility {

/// The first sequence of a UTF-8 text.
struct UTF8Sequence {
    char32_t value = 0;       ///< the code point, 0 if there is none
    std::uint32_t length = 0; ///< in bytes; 0 if the sequence is malformed or incomplete
};

/// Decodes the sequence at `inText`, which has `inCount` bytes, at least one. Overlong forms and
/// values above U+10FFFF are malformed. The three-byte form of a surrogate is accepted, because the
/// library's text keeps a surrogate without its partner; callers that must not see one check the
/// value.
template <typename Byte>
constexpr UTF8Sequence DecodeUTF8Sequence(Byte const* inText, std::size_t inCount) noexcept {
    auto const byteAt = [inText](std::size_t inIndex) {
        return static_cast<std::uint8_t>(inText[inIndex]);
    };
    auto const isTrailing = [byteAt](std::size_t inIndex) {
        return (byteAt(inIndex) & 0xC0) == 0x80;
    };
    auto const bits = [byteAt](std::size_t inIndex) {
        return static_cast<char32_t>(byteAt(inIndex) & 0x3F);
    };
    char32_t const lead = byteAt(0);
    if (lead < 0x80) {
        return {lead, 1};
    }
    if (lead < 0xC2 || lead > 0xF4) {
        return {};
    }
    if (lead < 0xE0) {
        if (inCount < 2 || !isTrailing(1)) {
            return {};
        }
        return {(lead & 0x1F) << 6 | bits(1), 2};
    }
    if (lead < 0xF0) {
        if (inCount < 3 || !isTrailing(1) || !isTrailing(2)) {
            return {};
        }
        char32_t const value = (lead & 0x0F) << 12 | bits(1) << 6 | bits(2);
        return value < 0x800 ? UTF8Sequence{} : UTF8Sequence{value, 3};
    }
    if (inCount < 4 || !isTrailing(1) || !isTrailing(2) || !isTrailing(3)) {
        return {};
    }
    char32_t const value = (lead & 0x07) << 18 | bits(1) << 12 | bits(2) << 6 | bits(3);
    return value < 0x10000 || value > 0x10FFFF ? UTF8Sequence{} : UTF8Sequence{value, 4};
}

/// Writes the sequence of `inValue`, which is at most U+10FFFF, and returns the end of it.
template <typename Byte>
constexpr Byte* EncodeUTF8Sequence(char32_t inValue, Byte* outText) noexcept {
    if (inValue < 0x80) {
        *outText++ = static_cast<Byte>(inValue);
        return outText;
    }
    auto const trailing = [inValue](int inShift) {
        return static_cast<Byte>(0x80 | (inValue >> inShift & 0x3F));
    };
    if (inValue < 0x800) {
        *outText++ = static_cast<Byte>(0xC0 | inValue >> 6);
    } else if (inValue < 0x10000) {
        *outText++ = static_cast<Byte>(0xE0 | inValue >> 12);
        *outText++ = trailing(6);
    } else {
        *outText++ = static_cast<Byte>(0xF0 | inValue >> 18);
        *outText++ = trailing(12);
        *outText++ = trailing(6);
    }
    *outText++ = trailing(0);
    return outText;
}

/// The code point of a surrogate pair, and the two units of a code point above U+FFFF.
constexpr char32_t JoinSurrogates(std::uint16_t inHigh, std::uint16_t inLow) noexcept {
    return 0x10000 + (static_cast<char32_t>(inHigh - 0xD800) << 10) + (inLow - 0xDC00U);
}
constexpr std::uint16_t HighSurrogate(char32_t inValue) noexcept {
    return static_cast<std::uint16_t>(0xD7C0 + (inValue >> 10));
}
constexpr std::uint16_t LowSurrogate(char32_t inValue) noexcept {
    return static_cast<std::uint16_t>(0xDC00 | (inValue & 0x3FF));
}

} // namespace brindle::utility
