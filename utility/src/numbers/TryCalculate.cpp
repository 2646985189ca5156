#include <brindle/utility/Calculator.h>

#include "utility/src/numbers/Expression.h"
#include "utility/src/numbers/NumberReading.h"
#include "utility/src/numbers/Separators.h"
#include <brindle/utility/Digits.h>

#include <cmath>
#include <limits>

namespace brindle::utility {

namespace {

/// Expressions of numbers; what cannot be calculated is not a number.
struct NumberRules {
    using Value = double;

    static constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

    static int Tightness(char inOperator) noexcept {
        switch (inOperator) {
        case '+':
        case '-':
            return 1;
        case '*':
        case '/':
            return 2;
        case '^':
            return 3;
        default:
            return 0;
        }
    }

    double TakeOperand(std::string_view& ioText) const {
        auto size = CountOf(ioText, 0);
        bool const hasExponent = size != 0 && size < ioText.size() && (ioText[size] | 0x20) == 'e';
        if (hasExponent) {
            ++size;
            bool const hasSign =
                size < ioText.size() && (ioText[size] == '+' || ioText[size] == '-');
            size += hasSign ? 1 : 0;
            size += CountOf(ioText, size);
        }
        auto const number = WholeNumber(std::string(ioText.substr(0, size)), true);
        ioText.remove_prefix(size);
        return number.value_or(kNone);
    }

    double Negated(double inValue) const { return -inValue; }

    double Combined(double inLeft, char inOperator, double inRight) const {
        switch (inOperator) {
        case '+':
            return inLeft + inRight;
        case '-':
            return inLeft - inRight;
        case '*':
            return inLeft * inRight;
        case '/':
            return inRight == 0.0 ? kNone : inLeft / inRight;
        default:
            // The power of not a number can be a number.
            return std::isnan(inLeft) || std::isnan(inRight) ? kNone : std::pow(inLeft, inRight);
        }
    }

private:
    /// How many units of a number without exponent stand there.
    static std::size_t CountOf(std::string_view inText, std::size_t inFrom) noexcept {
        auto const end = inText.find_first_not_of("0123456789.,", inFrom);
        return (end == std::string_view::npos ? inText.size() : end) - inFrom;
    }
};

} // namespace

std::optional<double> TryCalculate(UTF16String const& inText) {
    NumberRules rules;
    Expression<NumberRules> expression(rules);
    bool const isExpression = expression.Read(InNeutralASCII(inText, UserSeparators()));
    bool const isNumber = isExpression && std::isfinite(expression.Result());
    return isNumber ? std::make_optional(expression.Result()) : std::nullopt;
}

} // namespace brindle::utility
