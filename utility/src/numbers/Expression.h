#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace brindle::utility {

/// Evaluates an expression of operands, operators, signs, parentheses and blanks in ASCII, from
/// left to right, with what waits for its right side on two stacks: time and memory are linear in
/// the length of the text, at any depth of parentheses. All operators are left-associative.
///
/// `Rules` says what the operands are:
///
///     using Value = ...;
///     Value TakeOperand(std::string_view& ioText); // removes it; there is at least one unit
///     Value Combined(Value left, char op, Value right);
///     static int Tightness(char op); // from 1, the loosest; 0 if it is no operator
///
/// and has `Value Negated(Value)` for signs, which bind tightest.
template <typename Rules>
class Expression {
public:
    using Value = typename Rules::Value;

    explicit Expression(Rules& ioRules) : mRules(ioRules) {}

    /// False if the text is no expression.
    bool Read(std::string_view inText) {
        while (mIsGood && !SkipBlanks(inText).empty()) {
            mNeedsOperand ? ReadOperand(inText) : ReadOperator(inText);
        }
        mIsGood = mIsGood && !mNeedsOperand;
        ApplyDownTo(1);
        return mIsGood && mOperators.empty(); // no parenthesis is left open
    }

    /// The value of what was read.
    Value Result() const { return mValues.back(); }

private:
    static constexpr char kNegation = '~';
    static constexpr int kTightest = 1000;

    static int Tightness(char inOperator) {
        return inOperator == kNegation ? kTightest : Rules::Tightness(inOperator);
    }

    static std::string_view SkipBlanks(std::string_view& ioText) noexcept {
        ioText.remove_prefix(std::min(ioText.find_first_not_of(' '), ioText.size()));
        return ioText;
    }

    void ReadOperand(std::string_view& ioText) {
        char const first = ioText[0];
        if (first == '(' || first == '-' || first == '+') {
            ioText.remove_prefix(1);
            if (first != '+') {
                mOperators.push_back(first == '-' ? kNegation : first);
            }
            return;
        }
        auto const size = ioText.size();
        mValues.push_back(mRules.TakeOperand(ioText));
        mIsGood = ioText.size() != size;
        mNeedsOperand = false;
    }

    void ReadOperator(std::string_view& ioText) {
        char const next = ioText[0];
        ioText.remove_prefix(1);
        if (next == ')') {
            ApplyDownTo(1);
            mIsGood = !mOperators.empty();
            if (mIsGood) {
                mOperators.pop_back();
            }
        } else if (Rules::Tightness(next) != 0) {
            ApplyDownTo(Rules::Tightness(next));
            mOperators.push_back(next);
            mNeedsOperand = true;
        } else {
            mIsGood = false;
        }
    }

    /// Applies the operators, up to a parenthesis, that bind at least so tightly.
    void ApplyDownTo(int inTightness) {
        while (mIsGood && !mOperators.empty() && Tightness(mOperators.back()) >= inTightness) {
            char const applied = mOperators.back();
            mOperators.pop_back();
            if (applied == kNegation) {
                mValues.back() = mRules.Negated(mValues.back());
            } else {
                Value const right = mValues.back();
                mValues.pop_back();
                mValues.back() = mRules.Combined(mValues.back(), applied, right);
            }
        }
    }

    Rules& mRules;
    std::vector<Value> mValues;
    std::vector<char> mOperators;
    bool mNeedsOperand = true;
    bool mIsGood = true;
};

} // namespace brindle::utility
