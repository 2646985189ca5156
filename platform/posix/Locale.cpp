#include "platform/Locale.h"

#include <clocale>
#include <cwchar>
#include <locale.h>
#include <string>

namespace brindle::platform {

namespace {

locale_t UserLocale() {
    static locale_t const locale = [] {
        constexpr int kMask = LC_COLLATE_MASK | LC_CTYPE_MASK;
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

} // namespace brindle::platform
