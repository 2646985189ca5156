#include <brindle/config/Text.h>

#include "config/src/LocalizedText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

namespace brindle::config {

namespace {

using utility::Utf16;

template <typename Number>
UTF16String NumberText(Number inNumber) {
    char text[32];
    return Utf16(std::string_view(
        text,
        static_cast<std::size_t>(std::to_chars(text, text + sizeof text, inNumber).ptr - text)));
}

/// The plural category of a value; texts have `kOther`.
PluralCategory CategoryOf(ReplacementValue const& inValue, PluralRule inRule) {
    switch (inValue.GetKind()) {
    case ReplacementValue::kKind_Signed: {
        auto const bits = static_cast<std::uint64_t>(inValue.GetSigned());
        return inRule(inValue.GetSigned() < 0 ? 0 - bits : bits, false);
    }
    case ReplacementValue::kKind_Unsigned:
        return inRule(inValue.GetUnsigned(), false);
    case ReplacementValue::kKind_Double: {
        constexpr double kLimit = 18446744073709551616.0;
        double const magnitude = std::fabs(inValue.GetDouble());
        return magnitude < kLimit // false for NaN
                   ? inRule(static_cast<std::uint64_t>(magnitude),
                            magnitude != std::floor(magnitude))
                   : PluralCategory::kOther;
    }
    default:
        return PluralCategory::kOther;
    }
}

/// Replaces the placeholders of a text from left to right.
class Expansion {
public:
    Expansion(std::initializer_list<ReplacementValue> inValues, PluralRule inRule)
        : mValues(inValues.begin()), mCount(inValues.size()), mRule(inRule) {}

    UTF16String Of(UTF16String const& inText) {
        Append(inText, kMayChoose);
        return std::move(mResult);
    }

private:
    static constexpr bool kMayChoose = true;

    void Append(UTF16String const& inText, bool inMayChoose) {
        for (std::size_t at = 0; at < inText.size();) {
            auto const length = AppendSpecial(inText, at, inMayChoose);
            if (length == 0) {
                mResult.push_back(inText[at]);
            }
            at += std::max<std::size_t>(length, 1);
        }
    }

    /// Appends what the placeholder at `inAt` stands for, and returns its length; 0 if there is
    /// none.
    std::size_t AppendSpecial(UTF16String const& inText, std::size_t inAt, bool inMayChoose) {
        auto const sign = inText[inAt];
        if ((sign != '^' && sign != '@') || inAt + 1 == inText.size()) {
            return 0;
        }
        auto const next = inText[inAt + 1];
        bool const isEscape =
            next == sign || (sign == '^' && (next == '{' || next == '|' || next == '}'));
        if (isEscape) {
            mResult.push_back(next);
            return 2;
        }
        std::uint16_t const first = sign == '^' ? '1' : '0';
        if (next < first || next > '9') {
            return 0;
        }
        auto const index = static_cast<std::size_t>(next - first);
        if (index >= mCount) {
            return 0;
        }
        auto const& value = mValues[index];
        if (sign == '^' && inMayChoose && inAt + 2 < inText.size() && inText[inAt + 2] == '{') {
            auto const start = inAt + 3;
            auto const end = EndOfPart(inText, start, false);
            if (end != inText.size()) {
                Append(Chosen(inText.substr(start, end - start), value), !kMayChoose);
                return end + 1 - inAt;
            }
        }
        mResult += TextOf(value);
        return 2;
    }

    /// Where the next "}" stands, or the next "|" too; the end if there is none.
    static std::size_t EndOfPart(UTF16String const& inText, std::size_t inAt, bool inAtBar) {
        auto at = inAt;
        while (at < inText.size() && inText[at] != '}' && (!inAtBar || inText[at] != '|')) {
            at += inText[at] == '^' ? 2u : 1u;
        }
        return std::min(at, inText.size());
    }

    /// The part for the value of "name=text|name=text".
    UTF16String Chosen(UTF16String const& inParts, ReplacementValue const& inValue) const {
        static constexpr std::u16string_view kNames[] = {u"zero", u"one",  u"two",
                                                         u"few",  u"many", u"other"};
        auto const number = TextOf(inValue);
        auto const category = kNames[static_cast<std::size_t>(CategoryOf(inValue, mRule))];
        UTF16String best;
        int bestRank = -1;
        for (std::size_t at = 0; at <= inParts.size();) {
            auto const end = EndOfPart(inParts, at, true);
            auto const part = inParts.substr(at, end - at);
            auto const equals = part.find('=');
            auto const name = part.substr(0, equals == part.npos ? 0 : equals);
            int const rank = name == number && equals != part.npos ? 3
                             : name == category                    ? 2
                             : name == kNames[5]                   ? 1
                                                                   : 0;
            // Of parts that do not fit, the last one is taken.
            if (rank > bestRank || (rank == 0 && bestRank == 0)) {
                bestRank = rank;
                best = part.substr(equals == part.npos ? 0 : equals + 1);
            }
            at = end + 1;
        }
        return best;
    }

    ReplacementValue const* mValues;
    std::size_t mCount;
    PluralRule mRule;
    UTF16String mResult;
};

} // namespace

UTF16String TextOf(ReplacementValue const& inValue) {
    switch (inValue.GetKind()) {
    case ReplacementValue::kKind_None:
        break;
    case ReplacementValue::kKind_Signed:
        return NumberText(inValue.GetSigned());
    case ReplacementValue::kKind_Unsigned:
        return NumberText(inValue.GetUnsigned());
    case ReplacementValue::kKind_Double:
        return NumberText(inValue.GetDouble());
    case ReplacementValue::kKind_Text:
        return inValue.GetText();
    }
    return {};
}

UTF16String Text(char const* inLiteral, std::initializer_list<ReplacementValue> inValues) {
    if (inLiteral == nullptr) {
        return {};
    }
    auto const localized = Localized(inLiteral);
    return Expansion(inValues, localized.rule).Of(localized.text);
}

} // namespace brindle::config
