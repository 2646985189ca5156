#include <brindle/time/Timecode.h>

#include "utility/src/numbers/Expression.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

namespace brindle::time {

namespace {

/// A number of frames, or of times that something is taken.
struct Amount {
    std::int64_t value = 0;
    bool isTime = false;
};

/// Expressions of timecodes and whole numbers. Remembers the first fault.
class TimecodeRules {
public:
    using Value = Amount;

    TimecodeRules(TimecodeFormat const& inFormat, FrameRate const& inRate, FrameCounting inCounting)
        : mFormat(inFormat), mRate(inRate), mCounting(inCounting) {}

    TimecodeFault Fault() const { return mFault; }

    Amount TakeOperand(std::string_view& ioText) {
        auto const size = std::min(ioText.find_first_not_of("0123456789:;"), ioText.size());
        auto const text = ioText.substr(0, size);
        ioText.remove_prefix(size);
        return text.find_first_of(":;") == std::string_view::npos ? Number(text) : Timecode(text);
    }

    Amount Negated(Amount inAmount) { return Combined({0, inAmount.isTime}, '-', inAmount); }

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
            Require(!inLeft.isTime || !inRight.isTime, TimecodeFault::kForm);
            break;
        default:
            if (inRight.value == -1) { // the least number has no positive counterpart
                return Negated(inLeft);
            }
            Require(!inRight.isTime && inRight.value != 0, TimecodeFault::kForm);
            result.value = inRight.value == 0 ? 0 : inLeft.value / inRight.value;
        }
        Require(!isTooLarge, TimecodeFault::kTooLarge);
        return result;
    }

    static int Tightness(char inOperator) noexcept {
        return inOperator == '+' || inOperator == '-'   ? 1
               : inOperator == '*' || inOperator == '/' ? 2
                                                        : 0;
    }

private:
    void Require(bool inHolds, TimecodeFault inFault) noexcept {
        if (!inHolds && mFault == TimecodeFault::kNone) {
            mFault = inFault;
        }
    }

    Amount Number(std::string_view inText) {
        Amount amount;
        auto const* const end = inText.data() + inText.size();
        auto const error = std::from_chars(inText.data(), end, amount.value).ec;
        Require(error != std::errc::result_out_of_range, TimecodeFault::kTooLarge);
        return amount;
    }

    Amount Timecode(std::string_view inText) {
        auto const reading = mFormat.ToTime(inText, mCounting);
        Require(reading.fault == TimecodeFault::kNone, reading.fault);
        return {reading.time.ToFrame64(mRate), true};
    }

    TimecodeFormat const& mFormat;
    FrameRate const mRate;
    FrameCounting const mCounting;
    TimecodeFault mFault = TimecodeFault::kNone;
};

} // namespace

TimecodeReading TimecodeFormat::Evaluate(std::string_view inText) const {
    TimecodeRules rules(*this, mFrameRate, mCounting);
    utility::Expression<TimecodeRules> expression(rules);
    bool const isExpression = expression.Read(inText);
    if (rules.Fault() != TimecodeFault::kNone) {
        return {rules.Fault(), {}};
    }
    if (!isExpression) {
        return {TimecodeFault::kForm, {}};
    }
    std::int64_t ticks = 0;
    if (__builtin_mul_overflow(expression.Result().value, mFrameRate.GetTicksPerFrame(), &ticks)) {
        return {TimecodeFault::kTooLarge, {}};
    }
    return {TimecodeFault::kNone, TickTime::TicksToTickTime(ticks)};
}

} // namespace brindle::time
