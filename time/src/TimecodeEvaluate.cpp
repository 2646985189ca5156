#include <brindle/time/Timecode.h>

#include <brindle/utility/Digits.h>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <vector>

namespace brindle::time {

namespace {

/// A number of frames, or of times that something is taken.
struct Amount {
    std::int64_t value = 0;
    bool isTime = false;
};

constexpr char kNegation = '~';

/// How tightly an operator binds; 0 for a parenthesis.
int Tightness(char inOperator) noexcept {
    switch (inOperator) {
    case '+':
    case '-':
        return 1;
    case '*':
    case '/':
        return 2;
    case kNegation:
        return 3;
    default:
        return 0;
    }
}

/// Reads the text from left to right, with what waits for its right side on two stacks.
class Calculation {
public:
    Calculation(TimecodeFormat const& inFormat, FrameRate const& inRate, FrameCounting inCounting)
        : mFormat(inFormat), mRate(inRate), mCounting(inCounting) {}

    TimecodeFault Read(std::string_view inText) {
        while (mFault == TimecodeFault::kNone && !SkipBlanks(inText).empty()) {
            mNeedsOperand ? ReadOperand(inText) : ReadOperator(inText);
        }
        if (mNeedsOperand) {
            Fail(TimecodeFault::kForm);
        }
        ApplyDownTo(1);
        if (!mOperators.empty()) { // a parenthesis that is not closed
            Fail(TimecodeFault::kForm);
        }
        return mFault;
    }

    std::int64_t Frames() const { return mAmounts.back().value; }

private:
    static std::string_view SkipBlanks(std::string_view& ioText) noexcept {
        ioText.remove_prefix(std::min(ioText.find_first_not_of(' '), ioText.size()));
        return ioText;
    }

    void Fail(TimecodeFault inFault) noexcept {
        if (mFault == TimecodeFault::kNone) {
            mFault = inFault;
        }
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
        auto const size = std::min(ioText.find_first_not_of("0123456789:;"), ioText.size());
        auto const text = ioText.substr(0, size);
        ioText.remove_prefix(size);
        text.find_first_of(":;") == std::string_view::npos ? ReadNumber(text) : ReadTimecode(text);
        mNeedsOperand = false;
    }

    void ReadNumber(std::string_view inText) {
        Amount amount;
        auto const error =
            std::from_chars(inText.data(), inText.data() + inText.size(), amount.value).ec;
        if (error != std::errc()) {
            Fail(error == std::errc::result_out_of_range ? TimecodeFault::kTooLarge
                                                         : TimecodeFault::kForm);
        }
        mAmounts.push_back(amount);
    }

    void ReadTimecode(std::string_view inText) {
        auto const reading = mFormat.ToTime(inText, mCounting);
        Fail(reading.fault);
        mAmounts.push_back({reading.time.ToFrame64(mRate), true});
    }

    void ReadOperator(std::string_view& ioText) {
        char const next = ioText[0];
        ioText.remove_prefix(1);
        if (next == ')') {
            ApplyDownTo(1);
            if (mOperators.empty()) {
                Fail(TimecodeFault::kForm);
            } else {
                mOperators.pop_back();
            }
        } else if (next != kNegation && Tightness(next) != 0) {
            ApplyDownTo(Tightness(next));
            mOperators.push_back(next);
            mNeedsOperand = true;
        } else {
            Fail(TimecodeFault::kForm);
        }
    }

    /// Applies the operators, up to a parenthesis, that bind at least so tightly.
    void ApplyDownTo(int inTightness) {
        while (mFault == TimecodeFault::kNone && !mOperators.empty() &&
               Tightness(mOperators.back()) >= inTightness) {
            char const applied = mOperators.back();
            mOperators.pop_back();
            Amount right = mAmounts.back();
            if (applied == kNegation) {
                mAmounts.back() = Combined({0, right.isTime}, '-', right);
            } else {
                mAmounts.pop_back();
                mAmounts.back() = Combined(mAmounts.back(), applied, right);
            }
        }
    }

    Amount Combined(Amount inLeft, char inOperator, Amount inRight) {
        Amount result{0, inLeft.isTime || inRight.isTime};
        bool isTooLarge = false;
        switch (inOperator) {
        case '+':
            isTooLarge = __builtin_add_overflow(inLeft.value, inRight.value, &result.value);
            break;
        case '-':
            isTooLarge = __builtin_sub_overflow(inLeft.value, inRight.value, &result.value);
            break;
        case '*':
            isTooLarge = __builtin_mul_overflow(inLeft.value, inRight.value, &result.value);
            if (inLeft.isTime && inRight.isTime) {
                Fail(TimecodeFault::kForm);
            }
            break;
        default:
            if (inRight.isTime || inRight.value == 0) {
                Fail(TimecodeFault::kForm);
            } else {
                // The least number has no positive counterpart.
                isTooLarge =
                    inRight.value == -1 && __builtin_sub_overflow(0, inLeft.value, &result.value);
                result.value = inRight.value == -1 ? result.value : inLeft.value / inRight.value;
            }
        }
        if (isTooLarge) {
            Fail(TimecodeFault::kTooLarge);
        }
        return result;
    }

    TimecodeFormat const& mFormat;
    FrameRate const mRate;
    FrameCounting const mCounting;
    std::vector<Amount> mAmounts;
    std::vector<char> mOperators;
    bool mNeedsOperand = true;
    TimecodeFault mFault = TimecodeFault::kNone;
};

} // namespace

TimecodeReading TimecodeFormat::Evaluate(std::string_view inText) const {
    Calculation calculation(*this, mFrameRate, mCounting);
    auto const fault = calculation.Read(inText);
    if (fault != TimecodeFault::kNone) {
        return {fault, {}};
    }
    std::int64_t ticks = 0;
    if (__builtin_mul_overflow(calculation.Frames(), mFrameRate.GetTicksPerFrame(), &ticks)) {
        return {TimecodeFault::kTooLarge, {}};
    }
    return {TimecodeFault::kNone, TickTime::TicksToTickTime(ticks)};
}

} // namespace brindle::time
