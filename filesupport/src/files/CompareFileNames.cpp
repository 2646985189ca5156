#include <brindle/filesupport/PathNames.h>

#include "platform/Locale.h"

#include <brindle/utility/StringUtils.h>

namespace brindle::filesupport {

namespace {

/// The full-width form of half-width katakana, from U+FF65 on.
constexpr char16_t kWideKatakana[] =
    u"\u30FB\u30F2\u30A1\u30A3\u30A5\u30A7\u30A9\u30E3\u30E5\u30E7\u30C3\u30FC"
    u"\u30A2\u30A4\u30A6\u30A8\u30AA\u30AB\u30AD\u30AF\u30B1\u30B3\u30B5\u30B7\u30B9\u30BB\u30BD"
    u"\u30BF\u30C1\u30C4\u30C6\u30C8\u30CA\u30CB\u30CC\u30CD\u30CE\u30CF\u30D2\u30D5\u30D8\u30DB"
    u"\u30DE\u30DF\u30E0\u30E1\u30E2\u30E4\u30E6\u30E8\u30E9\u30EA\u30EB\u30EC\u30ED\u30EF\u30F3"
    u"\u3099\u309A";

std::uint16_t WithoutWidth(std::uint16_t inUnit) noexcept {
    if (inUnit >= 0xFF01 && inUnit <= 0xFF5E) { // full-width "!" to "~"
        return static_cast<std::uint16_t>(inUnit - 0xFEE0);
    }
    if (inUnit >= 0xFF65 && inUnit <= 0xFF9F) {
        return kWideKatakana[inUnit - 0xFF65];
    }
    return inUnit == 0x3000 ? std::uint16_t{u' '} : inUnit; // the ideographic space
}

std::uint16_t WithoutKanaType(std::uint16_t inUnit) noexcept {
    bool const isHiragana =
        (inUnit >= 0x3041 && inUnit <= 0x3096) || inUnit == 0x309D || inUnit == 0x309E;
    return isHiragana ? static_cast<std::uint16_t>(inUnit + 0x60) : inUnit;
}

/// The name as far as it counts, without the differences that are ignored.
UTF16String ComparisonForm(UTF16String const& inName) {
    UTF16String name = inName.substr(0, inName.find(u'\0'));
    for (std::uint16_t& unit : name) {
        unit = WithoutKanaType(WithoutWidth(unit));
    }
    return utility::FoldCase(name);
}

} // namespace

int CompareFileNames(UTF16String const& inLHS, UTF16String const& inRHS) {
    UTF16String const left = ComparisonForm(inLHS);
    UTF16String const right = ComparisonForm(inRHS);
    int const order = platform::CompareText(left, right);
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

} // namespace brindle::filesupport
