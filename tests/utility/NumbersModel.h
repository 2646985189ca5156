#pragma once

#include <brindle/utility/Numbers.h>
#include <brindle/utility/StringStreams.h>
#include <brindle/utility/StringUtils.h>
#include <brindle/utility/Unicode.h>

#include "platform/Locale.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>

/// Numbers once more, by the C library and by streams, and the calculator cut by cut as it is told:
/// what the tests and the fuzz targets hold the library to.
namespace brindle::utility::model {

inline UTF16String NumberToString(double inValue, int inMinIntegerDigits, int inDecimals,
                                  unsigned inFlags, platform::NumberSeparators inUser) {
    double const value = inValue == 0.0 ? 0.0 : inValue < 0.0 ? -inValue : inValue;
    char buffer[512] = "-";
    double const rounded = std::floor(value + 0.5);
    if (inDecimals != 0) {
        std::snprintf(buffer, sizeof buffer, "%1.*f", inDecimals, value);
    } else if (rounded < 2147483648.0) {
        std::snprintf(buffer, sizeof buffer, "%i", static_cast<int>(rounded));
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
    if (inValue < 0.0) {
        text.insert(0, "-");
    } else if ((inFlags & 0x10) != 0) {
        text.insert(0, inValue == 0.0 && (inFlags & 0x40) != 0 ? "" : "+");
    } else if ((inFlags & 0x20) != 0) {
        text.insert(0, " ");
    }
    if (!hasExponent && (inFlags & 0x04) != 0 && text.find('.') != std::string::npos) {
        text.erase(text.find_last_not_of('0') + 1);
        text.erase(text.find_last_not_of('.') + 1);
    }
    UTF16String result(text.begin(), text.end());
    for (std::size_t i = 0; (inFlags & 0x01) == 0 && i + 1 < text.size(); ++i) {
        if (std::isdigit(text[i + 1]) != 0 && (text[i] == '.' || text[i] == ',')) {
            result[i] = text[i] == '.' ? inUser.decimal : inUser.thousands;
        }
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

/// `inText` holds nothing but units of expressions.
inline double Calculate(std::string inText) {
    auto const number = [](std::string const& inNumber) {
        return model::StringToNumber(UTF16String(inNumber.begin(), inNumber.end()), 0x01);
    };
    if (inText.size() <= 1) {
        return number(inText);
    }
    std::string stripped = inText;
    while (stripped.size() >= 2 && stripped.front() == '(' && stripped.back() == ')') {
        stripped = stripped.substr(1, stripped.size() - 2);
    }
    int depth = 0, least = 0;
    for (char const c : stripped) {
        depth += c == '(' ? 1 : c == ')' ? -1 : 0;
        least = std::min(least, depth);
    }
    inText = least < 0 ? inText : stripped;

    std::string const kinds = "e+-*/^";
    std::size_t const none = std::string::npos;
    std::size_t positions[] = {none, none, none, none, none, none};
    std::string kept;
    char previous = 0;
    depth = 0;
    for (char const c : inText) {
        std::size_t const kind = c == 'E' ? 0 : kinds.find(c);
        bool const hasLeft = previous != 0 && previous != 'E' && kinds.find(previous) == none;
        depth += c == '(' ? 1 : c == ')' ? -1 : 0;
        previous = c;
        if (depth == 0 && kind != none) {
            bool const isSum = kind == 1 || kind == 2;
            if (!isSum && !hasLeft) {
                continue;
            }
            positions[kind] = kept.size();
            positions[isSum ? 3 - kind : kind] = isSum ? none : kept.size();
        }
        kept += c;
    }
    for (std::size_t kind = 0; kind < kinds.size(); ++kind) {
        if (positions[kind] != none) {
            double const left = model::Calculate(kept.substr(0, positions[kind]));
            double const right = model::Calculate(kept.substr(positions[kind] + 1));
            double const results[] = {left * std::pow(10.0, right),
                                      left + right,
                                      left - right,
                                      left * right,
                                      right == 0.0 ? left : left / right,
                                      std::pow(left, right)};
            return results[kind];
        }
    }
    return number(kept);
}

} // namespace brindle::utility::model
