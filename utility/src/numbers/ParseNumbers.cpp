#include <brindle/utility/ParseNumbers.h>

#include "utility/src/base/CharConversions.h"
#include "utility/src/numbers/NumberReading.h"
#include "utility/src/numbers/Separators.h"

#include <brindle/utility/Digits.h>
#include <brindle/utility/TextOperations.h>

#include <algorithm>
#include <cstddef>

namespace brindle::utility {

namespace {

std::optional<platform::NumberSeparators> SeparatorsOf(NumberForm inForm) {
    return inForm == NumberForm::kUser ? std::make_optional(UserSeparators()) : std::nullopt;
}

/// Removes the separators between digits of the integer.
std::string WithoutSeparators(std::string const& inText) {
    auto const isDigitAt = [&inText](std::size_t inIndex) {
        return inIndex < inText.size() && IsDigit(inText[inIndex]);
    };
    auto const end = std::min(inText.find_first_of(".eE"), inText.size());
    std::string text;
    for (std::size_t i = 0; i < inText.size(); ++i) {
        bool const isSeparator =
            inText[i] == ',' && i < end && i > 0 && isDigitAt(i - 1) && isDigitAt(i + 1);
        text.append(isSeparator ? 0 : 1, inText[i]);
    }
    return text;
}

/// The number that is the whole text.
template <typename Number>
std::optional<Number> WholeText(std::string const& inText) {
    Number number{};
    auto const* const end = inText.data() + inText.size();
    auto const result = utility::FromChars(inText.data(), end, number);
    bool const isWhole = result.ec == std::errc() && result.ptr == end;
    return isWhole ? std::make_optional(number) : std::nullopt;
}

/// Takes the sign away, and returns whether it is a minus.
bool TakeSign(std::string& ioText) {
    bool const isNegative = !ioText.empty() && ioText[0] == '-';
    bool const hasSign = isNegative || (!ioText.empty() && ioText[0] == '+');
    ioText.erase(0, hasSign ? 1 : 0);
    return isNegative;
}

} // namespace

std::string InNeutralASCII(UTF16String const& inText,
                           std::optional<platform::NumberSeparators> inUser) {
    std::string text;
    for (auto const each : Trim(inText)) {
        auto const unit = inUser ? ToNeutralForm(each, *inUser) : ToNarrowForm(each);
        text += unit < 0x80 ? static_cast<char>(unit) : '?';
    }
    return text;
}

std::optional<double> WholeNumber(std::string inText, bool inIsGrouped) {
    // Neither a sign nor "inf" or "nan".
    bool const isNumber = !inText.empty() && (IsDigit(inText[0]) || inText[0] == '.');
    return isNumber ? WholeText<double>(inIsGrouped ? WithoutSeparators(inText) : inText)
                    : std::nullopt;
}

std::optional<std::int64_t> ParseInteger(UTF16String const& inText) {
    return ParseInteger(inText, NumberForm::kNeutral);
}

std::optional<std::int64_t> ParseInteger(UTF16String const& inText, NumberForm inForm) {
    auto text = InNeutralASCII(inText, SeparatorsOf(inForm));
    if (inForm == NumberForm::kUser) {
        text = WithoutSeparators(text);
    }
    // A minus belongs to the number, for the least one has no positive counterpart.
    bool const isSigned = text.size() > 1 && text[0] == '+' && IsDigit(text[1]);
    return WholeText<std::int64_t>(text.erase(0, isSigned ? 1 : 0));
}

std::optional<double> ParseNumber(UTF16String const& inText, NumberForm inForm) {
    auto text = InNeutralASCII(inText, SeparatorsOf(inForm));
    bool const isNegative = TakeSign(text);
    auto const magnitude = WholeNumber(text, inForm == NumberForm::kUser);
    return magnitude && isNegative ? -*magnitude : magnitude;
}

} // namespace brindle::utility
