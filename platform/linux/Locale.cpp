#include "platform/Locale.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <langinfo.h>
#include <locale.h>
#include <string_view>
#include <utility>

namespace brindle::platform {

namespace {

/// The user's locale for one category, or the "C" locale if the system does not have it. One
/// category at a time, for the call fails if any of several is missing.
locale_t UserLocale(int inCategory) {
    auto const user = ::newlocale(inCategory, "", nullptr);
    return user != nullptr ? user : ::newlocale(inCategory, "C", nullptr);
}

/// One wide character for each code point; a surrogate without its partner stays as it is.
std::wstring Widen(UTF16String const& inText) {
    std::wstring wide;
    wide.reserve(inText.size());
    for (std::size_t i = 0; i < inText.size(); ++i) {
        char32_t const unit = inText[i];
        bool const isPair = (unit & 0xFC00) == 0xD800 && i + 1 < inText.size() &&
                            (inText[i + 1] & 0xFC00) == 0xDC00;
        wide += static_cast<wchar_t>(
            isPair ? 0x10000 + ((unit - 0xD800) << 10) + (inText[++i] - 0xDC00U) : unit);
    }
    return wide;
}

/// The first unit of a separator, which the C library keeps as a wide character, so that nothing
/// has to be decoded by the encoding of some other category.
std::uint16_t FirstUnit(locale_t inLocale, nl_item inItem, std::uint16_t inDefault) {
    // The character is in the place of the pointer to a text.
    char const* const item = ::nl_langinfo_l(inItem, inLocale);
    wchar_t character;
    std::memcpy(&character, &item, sizeof character);
    bool const isUnit = character > 0 && character <= 0xFFFF;
    return isUnit ? static_cast<std::uint16_t>(character) : inDefault;
}

} // namespace

int CompareText(UTF16String const& inLHS, UTF16String const& inRHS) {
    auto const lhs = Widen(inLHS);
    auto const rhs = Widen(inRHS);
    static locale_t const locale = UserLocale(LC_COLLATE_MASK);
    // The system compares up to a NUL, so texts with NULs in them are compared piece by piece.
    std::size_t left = 0;
    std::size_t right = 0;
    for (;;) {
        auto const order = ::wcscoll_l(lhs.c_str() + left, rhs.c_str() + right, locale);
        if (order != 0) {
            return order;
        }
        auto const leftEnd = lhs.find(L'\0', left);
        auto const rightEnd = rhs.find(L'\0', right);
        if (leftEnd == std::wstring::npos || rightEnd == std::wstring::npos) {
            return (leftEnd != std::wstring::npos ? 1 : 0) -
                   (rightEnd != std::wstring::npos ? 1 : 0);
        }
        left = leftEnd + 1;
        right = rightEnd + 1;
    }
}

NumberSeparators UserNumberSeparators() {
    auto const locale = UserLocale(LC_NUMERIC_MASK);
    NumberSeparators separators;
    separators.decimal = FirstUnit(locale, _NL_NUMERIC_DECIMAL_POINT_WC, separators.decimal);
    separators.thousands = FirstUnit(locale, _NL_NUMERIC_THOUSANDS_SEP_WC, separators.thousands);
    ::freelocale(locale);
    return separators;
}

std::vector<std::string> UserLanguages() {
    auto const variable = [](char const* inName) {
        char const* const value = std::getenv(inName);
        return std::string_view(value != nullptr ? value : "");
    };
    auto const tagOf = [](std::string_view inLocale) {
        std::string tag(inLocale.substr(0, inLocale.find_first_of(".@")));
        std::replace(tag.begin(), tag.end(), '_', '-');
        return tag;
    };
    std::string locale;
    for (auto const name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (locale.empty()) {
            locale = tagOf(variable(name));
        }
    }
    std::vector<std::string> languages;
    if (locale.empty() || locale == "C" || locale == "POSIX") {
        return languages;
    }
    auto list = variable("LANGUAGE"); // separated by colons
    while (!list.empty()) {
        auto const end = std::min(list.find(':'), list.size());
        if (auto tag = tagOf(list.substr(0, end)); !tag.empty()) {
            languages.push_back(std::move(tag));
        }
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    if (languages.empty()) {
        languages.push_back(std::move(locale));
    }
    return languages;
}

} // namespace brindle::platform
