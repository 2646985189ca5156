#include <brindle/utility/ParseNumbers.h>

#include "utility/src/numbers/NumberReading.h"
#include "utility/src/numbers/Separators.h"

#include <brindle/utility/Digits.h>
#include <brindle/utility/TextOperations.h>

#include <charconv>
#include <string>

namespace brindle::utility {

namespace {

/// The text without the white space around it in ASCII; a unit that has no ASCII form becomes one
/// that no number has.
template <typename ToNeutral>
std::string Narrow(UTF16String const& inText, ToNeutral inToNeutral) {
    std::string text;
    for (auto const each : Trim(inText)) {
        auto const unit = inToNeutral(each);
        text += unit < 0x80 ? static_cast<char>(unit) : '?';
    }
    // `from_chars` takes no plus sign.
    bool const hasPlus = text.size() > 1 && text[0] == '+' && text[1] != '-';
    return hasPlus ? text.substr(1) : text;
}

/// Removes the separators between digits of the integer.
void RemoveSeparators(std::string& ioText) {
    std::string text;
    auto const end = ioText.find_first_of(".eE");
    for (std::size_t i = 0; i < ioText.size(); ++i) {
        bool const isBetweenDigits = ioText[i] == ',' && i < end && i > 0 &&
                                     IsDigit(ioText[i - 1]) && i + 1 < ioText.size() &&
                                     IsDigit(ioText[i + 1]);
        if (!isBetweenDigits) {
            text += ioText[i];
        }
    }
    ioText = text;
}

template <typename Number>
std::optional<Number> WholeNumber(std::string const& inText) {
    Number number{};
    auto const* const end = inText.data() + inText.size();
    auto const result = std::from_chars(inText.data(), end, number);
    bool const isWhole = result.ec == std::errc() && result.ptr == end;
    return isWhole ? std::make_optional(number) : std::nullopt;
}

} // namespace

std::optional<std::int64_t> ParseInteger(UTF16String const& inText) {
    return WholeNumber<std::int64_t>(Narrow(inText, ToNarrowForm));
}

std::optional<double> ParseNumber(UTF16String const& inText, NumberForm inForm) {
    std::string text;
    if (inForm == NumberForm::kUser) {
        auto const user = UserSeparators();
        text = Narrow(inText, [user](std::uint16_t inUnit) { return ToNeutralForm(inUnit, user); });
        RemoveSeparators(text);
    } else {
        text = Narrow(inText, ToNarrowForm);
    }
    // "inf" and "nan" are none.
    auto const first = text.find_first_not_of('-');
    bool const isNumber =
        first != std::string::npos && (IsDigit(text[first]) || text[first] == '.');
    return isNumber ? WholeNumber<double>(text) : std::nullopt;
}

} // namespace brindle::utility
