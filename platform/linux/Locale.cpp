#include "platform/Locale.h"

#include <clocale>
#include <cstring>
#include <cwchar>
#include <langinfo.h>
#include <locale.h>
#include <string>

namespace brindle::platform {

namespace {

/// The user's locale for some categories, or the "C" locale if the system does not have it.
locale_t UserLocale(int inCategories) {
    auto const user = ::newlocale(inCategories, "", nullptr);
    return user != nullptr ? user : ::newlocale(inCategories, "C", nullptr);
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

/// The first unit of what a locale says about `inItem`.
std::uint16_t FirstUnit(locale_t inLocale, nl_item inItem, std::uint16_t inDefault) {
    char const* const text = ::nl_langinfo_l(inItem, inLocale);
    // The text is in the encoding of its locale, and only the thread's locale can decode it.
    auto const previous = ::uselocale(inLocale);
    wchar_t character = 0;
    std::mbstate_t state{};
    auto const length = std::mbrtowc(&character, text, std::strlen(text), &state);
    ::uselocale(previous);
    bool const isUnit = length > 0 && length <= std::strlen(text) && character <= 0xFFFF;
    return isUnit ? static_cast<std::uint16_t>(character) : inDefault;
}

} // namespace

int CompareText(UTF16String const& inLHS, UTF16String const& inRHS) {
    auto const lhs = Widen(inLHS);
    auto const rhs = Widen(inRHS);
    static locale_t const locale = UserLocale(LC_COLLATE_MASK | LC_CTYPE_MASK);
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
    static NumberSeparators const user = [] {
        auto const locale = UserLocale(LC_NUMERIC_MASK | LC_CTYPE_MASK);
        NumberSeparators separators;
        separators.decimal = FirstUnit(locale, RADIXCHAR, separators.decimal);
        separators.thousands = FirstUnit(locale, THOUSEP, separators.thousands);
        ::freelocale(locale);
        return separators;
    }();
    return user;
}

} // namespace brindle::platform
