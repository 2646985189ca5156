#include "platform/Locale.h"

#include <clocale>
#include <cstring>
#include <cwchar>
#include <langinfo.h>
#include <locale.h>
#include <string>

namespace brindle::platform {

namespace {

locale_t UserLocale() {
    static locale_t const locale = [] {
        constexpr int kMask = LC_COLLATE_MASK | LC_CTYPE_MASK | LC_NUMERIC_MASK;
        auto const user = ::newlocale(kMask, "", nullptr);
        return user != nullptr ? user : ::newlocale(kMask, "C", nullptr);
    }();
    return locale;
}

/// One wide character for a code point; a lone surrogate stands for itself.
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

/// The first unit of what the user's locale says about `inItem`.
std::uint16_t FirstUnit(nl_item inItem, std::uint16_t inDefault) {
    auto const locale = UserLocale();
    char const* const text = ::nl_langinfo_l(inItem, locale);
    // The text is in the code page of its locale, and only the thread's locale decodes.
    auto const previous = ::uselocale(locale);
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
    auto const locale = UserLocale();
    // The system compares up to a NUL, so text that holds some is compared piece by piece.
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
    static NumberSeparators const user = {FirstUnit(RADIXCHAR, NumberSeparators().decimal),
                                          FirstUnit(THOUSEP, NumberSeparators().thousands)};
    return user;
}

} // namespace brindle::platform
