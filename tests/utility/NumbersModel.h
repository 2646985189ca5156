#pragma once

#include <brindle/utility/Numbers.h>
#include <brindle/utility/StringStreams.h>
#include <brindle/utility/StringUtils.h>
#include <brindle/utility/Unicode.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>

/// What the tests and the fuzz targets compare the library with: numbers written by the C library
/// and read by the streams, and a calculator that cuts a text in two again and again.
namespace brindle::utility::model {

inline UTF16String NumberToString(double inValue, int inMinIntegerDigits, int inDecimals,
                                  unsigned inFlags) {
    double const value = inValue == 0.0 ? 0.0 : inValue < 0.0 ? -inValue : inValue;
    char buffer[512] = "-";
    if (inDecimals != 0) {
        std::snprintf(buffer, sizeof buffer, "%1.*f", inDecimals, value);
    } else if (std::floor(value + 0.5) < 2147483648.0) {
        std::snprintf(buffer, sizeof buffer, "%i", static_cast<int>(std::floor(value + 0.5)));
    }
    bool const hasExponent = std::strlen(buffer) > 22 || buffer[0] == '-';
    if (hasExponent) {
        std::snprintf(buffer, sizeof buffer, "%e", value);
    }
    std::string text = buffer;
    if (!hasExponent) {
        while (static_cast<int>(std::min(text.find('.'), text.size())) < inMinIntegerDigits) {
            text.insert(0, (inFlags & 0x02) != 0 ? " " : "0");
        }
        std::size_t at = std::min(text.find('.'), text.size());
        while ((inFlags & 0x08) != 0 && at > 3) {
            text.insert(at -= 3, ",");
        }
    }
    char const* const zeroSign = (inFlags & 0x40) != 0 && inValue == 0.0 ? "" : "+";
    char const* const blank = (inFlags & 0x20) != 0 ? " " : "";
    text.insert(0, inValue < 0.0 ? "-" : (inFlags & 0x10) != 0 ? zeroSign : blank);
    if (!hasExponent && (inFlags & 0x04) != 0 && text.find('.') != std::string::npos) {
        text.erase(text.find_last_not_of('0') + 1);
        text.erase(text.find_last_not_of('.') + 1);
    }
    UTF16String result(text.begin(), text.end());
    if ((inFlags & 0x01) == 0) {
        InternationalizeNum(result);
    }
    return result;
}

inline double StringToNumber(UTF16String inText, unsigned inFlags) {
    if ((inFlags & 0x02) == 0) {
        DeInternationalizeNum(inText);
    }
    ReplaceAllStringInString(inText, u","_utf16, UTF16String());
    iUTF8StringStream stream(UTF16to8(inText));
    double value = 0.0;
    return stream >> value ? value : 0.0;
}

/// `inText` holds only units that expressions are made of.
inline double Calculate(std::string inText) {
    if (inText.size() <= 1) {
        return model::StringToNumber(UTF16String(inText.begin(), inText.end()), 0x01);
    }
    std::string stripped = inText;
    while (stripped.size() >= 2 && stripped.front() == '(' && stripped.back() == ')') {
        stripped = stripped.substr(1, stripped.size() - 2);
    }
    auto const step = [](char inUnit) { return inUnit == '(' ? 1 : inUnit == ')' ? -1 : 0; };
    int depth = 0, least = 0;
    for (char const c : stripped) {
        least = std::min(least, depth += step(c));
    }
    inText = least < 0 ? inText : stripped;

    std::string const kinds = "e+-*/^";
    std::size_t positions[6];
    std::fill_n(positions, 6, std::string::npos);
    std::string kept;
    char previous = 0;
    depth = 0;
    for (char const c : inText) {
        depth += step(c);
        std::size_t const kind = kinds.find(c == 'E' ? 'e' : c);
        bool const hasLeft = previous != 0 && (kinds + 'E').find(previous) == std::string::npos;
        bool const isSum = c == '+' || c == '-';
        previous = c;
        if (depth == 0 && kind != std::string::npos) {
            if (!isSum && !hasLeft) {
                continue;
            }
            positions[isSum ? 3 - kind : kind] = std::string::npos;
            positions[kind] = kept.size();
        }
        kept += c;
    }
    for (std::size_t kind = 0; kind < 6; ++kind) {
        if (positions[kind] != std::string::npos) {
            double const l = model::Calculate(kept.substr(0, positions[kind]));
            double const r = model::Calculate(kept.substr(positions[kind] + 1));
            double const results[] = {l * std::pow(10.0, r), l + r,         l - r, l * r,
                                      r == 0.0 ? l : l / r,  std::pow(l, r)};
            return results[kind];
        }
    }
    return model::StringToNumber(UTF16String(kept.begin(), kept.end()), 0x01);
}

} // namespace brindle::utility::model
