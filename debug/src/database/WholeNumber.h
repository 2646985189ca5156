#pragma once

#include <brindle/utility/TextTypes.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string_view>
#include <system_error>

namespace brindle::debug {

/// The value of a text that consists of a decimal number, with white space around it if need be;
/// 0 for every other text, and for a number that does not fit.
inline std::int32_t WholeNumber(UTF8String const& inText) noexcept {
    constexpr std::string_view kWhiteSpace = " \t\r\n\v\f";
    std::string_view text(reinterpret_cast<char const*>(inText.data()), inText.size());
    text.remove_prefix(std::min(text.find_first_not_of(kWhiteSpace), text.size()));
    text = text.substr(0, text.find_last_not_of(kWhiteSpace) + 1);
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') {
        text.remove_prefix(1);
    }
    std::int32_t number = 0;
    auto const* const end = text.data() + text.size();
    auto const result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end ? number : 0;
}

} // namespace brindle::debug
