#pragma once

#include <charconv>
#include <cmath>
#include <cstring>
#include <system_error>
#include <type_traits>

#ifdef _LIBCPP_VERSION
#include <limits>
#include <locale>
#include <sstream>
#include <string>
#if _LIBCPP_VERSION < 200000
#define BRN_FROM_CHARS_BY_STREAM
#endif
#endif

namespace brindle::utility {

#ifdef BRN_FROM_CHARS_BY_STREAM

/// The end of the decimal number that the range begins with, or the begin if there is none.
inline char const* EndOfNumber(char const* inBegin, char const* inEnd) noexcept {
    auto const skipDigits = [inEnd](char const* inAt) {
        while (inAt != inEnd && *inAt >= '0' && *inAt <= '9') {
            ++inAt;
        }
        return inAt;
    };
    char const* const digits = inBegin + (inBegin != inEnd && *inBegin == '-' ? 1 : 0);
    char const* at = skipDigits(digits);
    bool hasDigits = at != digits;
    if (at != inEnd && *at == '.') {
        char const* const fraction = at + 1;
        at = skipDigits(fraction);
        hasDigits = hasDigits || at != fraction;
    }
    if (!hasDigits) {
        return inBegin;
    }
    if (at != inEnd && (*at == 'e' || *at == 'E')) {
        char const* exponent = at + 1;
        exponent += exponent != inEnd && (*exponent == '-' || *exponent == '+') ? 1 : 0;
        char const* const end = skipDigits(exponent);
        at = end != exponent ? end : at;
    }
    return at;
}

/// Reads a decimal number. "inf" and "nan" are none.
template <typename Number>
std::from_chars_result FromCharsByStream(char const* inBegin, char const* inEnd,
                                         Number& outNumber) {
    char const* const end = EndOfNumber(inBegin, inEnd);
    if (end == inBegin) {
        return {inBegin, std::errc::invalid_argument};
    }
    std::istringstream stream(std::string(inBegin, end));
    stream.imbue(std::locale::classic());
    Number number{};
    stream >> number;
    // The stream also fails at numbers that are so small that they lose digits.
    if (stream.fail() && (number == 0 || std::isinf(number) ||
                          std::abs(number) >= std::numeric_limits<Number>::max())) {
        return {end, std::errc::result_out_of_range};
    }
    outNumber = number;
    return {end, std::errc()};
}

#endif

/// `std::from_chars`, which libc++ has for floating point only from version 20 on.
template <typename Number>
std::from_chars_result FromChars(char const* inBegin, char const* inEnd, Number& outNumber) {
#ifdef BRN_FROM_CHARS_BY_STREAM
    if constexpr (std::is_floating_point_v<Number>) {
        return FromCharsByStream(inBegin, inEnd, outNumber);
    } else
#endif
    {
        return std::from_chars(inBegin, inEnd, outNumber);
    }
}

/// `std::to_chars` into a buffer of at least 4 units, with a NaN as streams write it in every
/// standard library: "nan" or "-nan".
template <typename Number, typename... Format>
std::to_chars_result ToChars(char* inBegin, char* inEnd, Number inNumber, Format... inFormat) {
    if constexpr (std::is_floating_point_v<Number>) {
        if (std::isnan(inNumber)) {
            char const* const text = std::signbit(inNumber) ? "-nan" : "nan";
            std::size_t const length = std::strlen(text);
            std::memcpy(inBegin, text, length);
            return {inBegin + length, std::errc()};
        }
    }
    return std::to_chars(inBegin, inEnd, inNumber, inFormat...);
}

#ifdef _LIBCPP_VERSION

/// libc++ would convert the number to a double first. The format is the general one.
inline std::to_chars_result ToChars(char* inBegin, char* inEnd, long double inNumber,
                                    std::chars_format, int inPrecision) {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream.precision(inPrecision);
    stream << inNumber;
    std::string const text = stream.str();
    if (text.size() > static_cast<std::size_t>(inEnd - inBegin)) {
        return {inEnd, std::errc::value_too_large};
    }
    std::memcpy(inBegin, text.data(), text.size());
    return {inBegin + text.size(), std::errc()};
}

#endif

} // namespace brindle::utility
