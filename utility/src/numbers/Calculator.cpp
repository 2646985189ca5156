#include <brindle/utility/Calculator.h>

#include "utility/src/numbers/NumberReading.h"
#include "utility/src/numbers/Separators.h"
#include <brindle/utility/Digits.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace brindle::utility {

namespace {

/// How tightly an operator binds, from 1; 0 for a unit that is no operator.
constexpr int Tightness(std::uint16_t inUnit) {
    switch (inUnit) {
    case u'e':
    case u'E':
        return 1;
    case u'+':
    case u'-':
        return 2;
    case u'*':
        return 3;
    case u'/':
        return 4;
    case u'^':
        return 5;
    default:
        return 0;
    }
}

/// "+" and "-" do not: they may stand in front of their operand.
constexpr bool NeedsLeftSide(std::uint16_t inUnit) {
    return Tightness(inUnit) != 0 && inUnit != u'+' && inUnit != u'-';
}

constexpr bool IsParenthesis(std::uint16_t inUnit) {
    return inUnit == u'(' || inUnit == u')';
}

constexpr bool IsOfExpression(std::uint16_t inUnit) {
    return IsDigit(inUnit) || inUnit == u'.' || inUnit == u',' || IsParenthesis(inUnit) ||
           Tightness(inUnit) != 0;
}

double Combine(double inLeft, std::uint16_t inOperator, double inRight) {
    switch (inOperator) {
    case u'+':
        return inLeft + inRight;
    case u'-':
        return inLeft - inRight;
    case u'*':
        return inLeft * inRight;
    case u'/':
        return inRight == 0.0 ? inLeft : inLeft / inRight;
    case u'^':
        return std::pow(inLeft, inRight);
    default:
        return inLeft * std::pow(10.0, inRight);
    }
}

/// Evaluates an expression scope by scope. A scope is a range of the text without enclosing
/// parentheses. The operators at its own depth cut it into operands, each of which is a scope in
/// turn; text in parentheses is jumped over until then, so that the time is linear.
class Calculation {
public:
    /// `inText` holds only units that expressions are made of, and outlives the object.
    explicit Calculation(UTF16String const& inText)
        : mText(inText), mUser(UserSeparators()), mReturns(inText.size()) {
        FindReturns();
    }

    double Result() {
        Open({0, mText.size()});
        while (!mScopes.empty()) {
            Scope& scope = mScopes.back();
            // Every scope around the innermost waits for one operand. If the counts are equal, the
            // innermost waits for one, too.
            if (mValues.size() == mOperators.size()) {
                ReadOperand(scope);
            } else if (scope.at != scope.end) {
                std::uint16_t const unit = mText[scope.at++];
                CombineDownTo(scope.base, Tightness(unit));
                mOperators.push_back(unit);
            } else {
                CombineDownTo(scope.base, 0);
                mScopes.pop_back();
            }
        }
        return mValues.back();
    }

private:
    struct Range {
        std::size_t begin, end;
    };

    struct Scope {
        std::size_t at, end;
        std::size_t base; ///< how many operators the scopes around it have on the stack
    };

    /// Finds for each parenthesis the next one that returns to the depth before it.
    void FindReturns() {
        std::size_t const none = mText.size();
        std::vector<std::size_t> leftAt(2 * mText.size() + 1, none);
        std::size_t depth = mText.size(); // begins in the middle, for it may go below as well
        for (std::size_t i = 0; i < mText.size(); ++i) {
            if (IsParenthesis(mText[i])) {
                leftAt[depth] = i;
                mReturns[i] = none;
                depth = mText[i] == u'(' ? depth + 1 : depth - 1;
                if (leftAt[depth] != none) {
                    mReturns[leftAt[depth]] = i;
                }
            }
        }
    }

    /// The range without all its enclosing parentheses, or the range itself if what remains would
    /// close more parentheses than it opens.
    Range WithoutParentheses(Range inRange) const {
        Range inner = inRange;
        while (inner.end - inner.begin >= 2 && mText[inner.begin] == u'(' &&
               mText[inner.end - 1] == u')') {
            ++inner.begin;
            --inner.end;
        }
        bool const closesMore =
            inner.begin != inRange.begin && mReturns[inner.begin - 1] < inner.end;
        return closesMore ? inRange : inner;
    }

    void Open(Range inRange) {
        Range const inner = WithoutParentheses(inRange);
        mScopes.push_back({inner.begin, inner.end, mOperators.size()});
    }

    void ReadOperand(Scope& ioScope) {
        Range operand{ioScope.at, ioScope.end};
        while (operand.begin != operand.end && NeedsLeftSide(mText[operand.begin])) {
            ++operand.begin;
        }
        std::size_t at = operand.begin;
        while (at < operand.end && Tightness(mText[at]) == 0) {
            at = 1 + (IsParenthesis(mText[at]) ? mReturns[at] : at);
        }
        operand.end = std::min(at, operand.end);
        ioScope.at = operand.end;

        bool const hasNoOperator = operand.end == ioScope.end && mOperators.size() == ioScope.base;
        if (hasNoOperator) {
            mValues.push_back(
                ReadNumber(mText.data() + operand.begin, mText.data() + operand.end, mUser));
        } else {
            Open(operand);
        }
    }

    /// Applies the operators above `inBase` that bind at least as tightly as `inTightness`.
    void CombineDownTo(std::size_t inBase, int inTightness) {
        while (mOperators.size() > inBase && Tightness(mOperators.back()) >= inTightness) {
            double const right = mValues.back();
            mValues.pop_back();
            mValues.back() = Combine(mValues.back(), mOperators.back(), right);
            mOperators.pop_back();
        }
    }

    UTF16String const& mText;
    platform::NumberSeparators const mUser;
    std::vector<std::size_t> mReturns;
    std::vector<Scope> mScopes;
    std::vector<std::uint16_t> mOperators;
    std::vector<double> mValues;
};

} // namespace

double Calculate(UTF16String inText) {
    std::transform(inText.begin(), inText.end(), inText.begin(), ToNarrowForm);
    auto const isForeign = [](std::uint16_t inUnit) { return !IsOfExpression(inUnit); };
    inText.erase(std::remove_if(inText.begin(), inText.end(), isForeign), inText.end());
    return Calculation(inText).Result();
}

} // namespace brindle::utility
