#include <brindle/time/Timecode.h>

#include <brindle/utility/Digits.h>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <limits>

namespace brindle::time {

namespace {

constexpr std::uint64_t kLargestTicks = std::numeric_limits<std::int64_t>::max();

/// No timecode that fits into a `TickTime` has more hours.
constexpr std::uint64_t kMostHours = kLargestTicks / kTicksPerSecond / 3600;

/// A sign, hours, minutes and seconds with ":" around them, the separator, frames at the fastest
/// rate.
constexpr std::size_t kMostDigits = 20;
constexpr std::size_t kLongestText = 1 + kMostDigits + 3 + 3 + 1 + kMostDigits;

/// Writes a number with at least `inLeastDigits` so that it ends at `inEnd`, and returns its begin.
char* WriteNumberBefore(char* inEnd, std::uint64_t inNumber, std::uint32_t inLeastDigits) noexcept {
    char* const shortest = inEnd - inLeastDigits;
    char* begin = inEnd;
    while (begin > shortest || inNumber != 0) {
        *--begin = static_cast<char>('0' + inNumber % 10);
        inNumber /= 10;
    }
    return begin;
}

/// Reads a text from its front, and remembers whether all of it has been as expected.
class Reader {
public:
    explicit Reader(std::string_view inText) noexcept : mText(inText) {}

    bool IsGood() const noexcept { return mIsGood; }
    bool IsAtEnd() const noexcept { return mText.empty(); }

    /// Skips the character if it is the next one, and returns whether it was.
    bool Skip(char inCharacter) noexcept {
        bool const isNext = !mText.empty() && mText.front() == inCharacter;
        if (isNext) {
            mText.remove_prefix(1);
        }
        return isNext;
    }

    void Expect(char inCharacter) noexcept { mIsGood = Skip(inCharacter) && mIsGood; }

    /// Reads all digits that follow as a number; their count must be in the given range. A number
    /// over `inLargest` is only known to be over it.
    std::uint64_t Number(std::size_t inLeastDigits, std::size_t inMostDigits,
                         std::uint64_t inLargest) noexcept {
        std::uint64_t number = 0;
        std::size_t count = 0;
        while (count < mText.size() && utility::IsDigit(mText[count])) {
            if (number <= inLargest) {
                number = number * 10 + static_cast<std::uint64_t>(mText[count] - '0');
            }
            ++count;
        }
        mIsGood = mIsGood && count >= inLeastDigits && count <= inMostDigits;
        mText.remove_prefix(count);
        return number;
    }

private:
    std::string_view mText;
    bool mIsGood = true;
};

/// What somebody typed: groups of digits from hours to frames.
struct TypedTimecode {
    static constexpr std::size_t kGroups = 4;

    TypedTimecode(std::string_view inText, std::size_t inFrameDigits) noexcept {
        TakeBlanksAndSign(inText);
        bool const hasSeparators = inText.find_first_of(kSeparators) != std::string_view::npos;
        isGood = !inText.empty();
        // From the frames to the front.
        while (isGood && !inText.empty() && first > 0) {
            auto const place = inText.find_last_of(kSeparators);
            auto const begin = place == std::string_view::npos ? 0 : place + 1;
            auto const most = first == kGroups ? inFrameDigits : 2;
            bool const isLast = first == 1;
            auto const size =
                hasSeparators || isLast ? inText.size() - begin : std::min(inText.size(), most);
            TakeGroup(inText.substr(inText.size() - size));
            inText.remove_suffix(size);
            TakeSeparator(inText);
        }
        isGood = isGood && inText.empty();
    }

    std::uint64_t groups[kGroups] = {};
    std::size_t first = kGroups; ///< the first group that is there
    bool isGood = false;
    bool isTooLarge = false;
    bool isNegative = false;
    bool isDropFrame = false;

private:
    static constexpr char kSeparators[] = ":;.,";

    void TakeBlanksAndSign(std::string_view& ioText) noexcept {
        ioText.remove_prefix(std::min(ioText.find_first_not_of(' '), ioText.size()));
        ioText.remove_suffix(ioText.size() - (ioText.find_last_not_of(' ') + 1));
        if (!ioText.empty() && (ioText[0] == '-' || ioText[0] == '+')) {
            isNegative = ioText[0] == '-';
            ioText.remove_prefix(1);
        }
    }
    void TakeGroup(std::string_view inDigits) noexcept {
        auto& group = groups[--first];
        auto const* const end = inDigits.data() + inDigits.size();
        auto const [last, error] = std::from_chars(inDigits.data(), end, group);
        isGood = isGood && last == end && error != std::errc::invalid_argument;
        isTooLarge = isTooLarge || error == std::errc::result_out_of_range;
    }
    /// The one in front of the group that was taken; there must be another group before it.
    void TakeSeparator(std::string_view& ioText) noexcept {
        char const last = ioText.empty() ? '0' : ioText.back();
        if (!utility::IsDigit(last)) {
            isDropFrame = isDropFrame || last == ';';
            ioText.remove_suffix(1);
            isGood = isGood && !ioText.empty();
        }
    }
};

/// The frames of a second as they are counted, or 0 if the rate has no timecode.
std::uint64_t CountedFramesPerSecond(std::int64_t inTicksPerFrame) noexcept {
    if (inTicksPerFrame <= 0) {
        return 0;
    }
    if (kTicksPerSecond % inTicksPerFrame == 0) {
        return static_cast<std::uint64_t>(kTicksPerSecond / inTicksPerFrame);
    }
    constexpr std::int64_t kTicksOf1001Seconds = 1001 * kTicksPerSecond;
    std::int64_t const frames = kTicksOf1001Seconds / inTicksPerFrame;
    bool const isWhole = kTicksOf1001Seconds % inTicksPerFrame == 0 && frames % 1000 == 0;
    return isWhole ? static_cast<std::uint64_t>(frames / 1000) : 0;
}

} // namespace

std::optional<TimecodeFormat> TimecodeFormat::Create(FrameRate const& inFrameRate,
                                                     FrameCounting inCounting) noexcept {
    TimecodeFormat format;
    format.mFrameRate = inFrameRate;
    format.mCounting = inCounting;
    format.mFramesPerSecond = CountedFramesPerSecond(inFrameRate.GetTicksPerFrame());
    if (format.mFramesPerSecond == 0) {
        return std::nullopt;
    }
    bool const isBehindTheClock = kTicksPerSecond % inFrameRate.GetTicksPerFrame() != 0;
    if (isBehindTheClock && format.mFramesPerSecond % 30 == 0) {
        format.mDropped = format.mFramesPerSecond / 15;
    }
    if (inCounting == FrameCounting::kDropFrame && format.mDropped == 0) {
        return std::nullopt;
    }
    for (std::uint64_t largest = format.mFramesPerSecond - 1; largest >= 100; largest /= 10) {
        ++format.mFrameDigits;
    }
    return format;
}

/// A label is the number that the text of a frame stands for when no numbers are left out.
std::uint64_t TimecodeFormat::LabelOf(std::uint64_t inFrame) const noexcept {
    std::uint64_t const perMinute = 60 * mFramesPerSecond - mDropped;
    std::uint64_t const perTenMinutes = 10 * perMinute + mDropped;
    std::uint64_t const tens = inFrame / perTenMinutes;
    std::uint64_t const rest = inFrame % perTenMinutes;
    // The first of ten minutes keeps all its numbers and is longer than the others by these.
    std::uint64_t const minutes = rest < mDropped ? 0 : (rest - mDropped) / perMinute;
    return inFrame + mDropped * (9 * tens + minutes);
}

std::uint64_t TimecodeFormat::FrameOf(std::uint64_t inLabel) const noexcept {
    std::uint64_t const minutes = inLabel / (60 * mFramesPerSecond);
    return inLabel - mDropped * (minutes - minutes / 10);
}

std::string TimecodeFormat::ToText(TickTime const& inTime) const {
    bool const isDropFrame = mCounting == FrameCounting::kDropFrame;
    std::int64_t const frame = inTime.ToFrame64(mFrameRate);
    std::uint64_t const distance =
        frame < 0 ? 0 - static_cast<std::uint64_t>(frame) : static_cast<std::uint64_t>(frame);
    std::uint64_t const label = isDropFrame ? LabelOf(distance) : distance;
    std::uint64_t const seconds = label / mFramesPerSecond;
    std::uint64_t const minutes = seconds / 60;

    char text[kLongestText];
    char* const end = text + kLongestText;
    char* begin = WriteNumberBefore(end, label % mFramesPerSecond, mFrameDigits);
    *--begin = isDropFrame ? ';' : ':';
    begin = WriteNumberBefore(begin, seconds % 60, 2);
    *--begin = ':';
    begin = WriteNumberBefore(begin, minutes % 60, 2);
    *--begin = ':';
    begin = WriteNumberBefore(begin, minutes / 60, 2);
    if (frame < 0) {
        *--begin = '-';
    }
    return std::string(begin, end);
}

TimecodeReading TimecodeFormat::ToTime(std::string_view inText) const noexcept {
    Reader reader(inText);
    bool const isNegative = reader.Skip('-');
    std::uint64_t const hours = reader.Number(2, inText.size(), kMostHours);
    reader.Expect(':');
    std::uint64_t const minutes = reader.Number(2, 2, 59);
    reader.Expect(':');
    std::uint64_t const seconds = reader.Number(2, 2, 59);
    bool const isDropFrame = reader.Skip(';');
    if (!isDropFrame) {
        reader.Expect(':');
    }
    std::uint64_t const frames = reader.Number(mFrameDigits, mFrameDigits, mFramesPerSecond);
    if (!reader.IsGood() || !reader.IsAtEnd()) {
        return {TimecodeFault::kForm, {}};
    }
    if (minutes > 59) {
        return {TimecodeFault::kMinutes, {}};
    }
    if (seconds > 59) {
        return {TimecodeFault::kSeconds, {}};
    }
    if (frames >= mFramesPerSecond) {
        return {TimecodeFault::kFrames, {}};
    }
    if (hours > kMostHours) {
        return {TimecodeFault::kTooLarge, {}};
    }
    return TimeOf(((hours * 60 + minutes) * 60 + seconds) * mFramesPerSecond + frames, isDropFrame,
                  isNegative);
}

TimecodeReading TimecodeFormat::TimeOf(std::uint64_t inLabel, bool inIsDropFrame,
                                       bool inIsNegative) const noexcept {
    if (inIsDropFrame && mDropped == 0) {
        return {TimecodeFault::kNoDropFrame, {}};
    }
    std::uint64_t const perMinute = 60 * mFramesPerSecond;
    if (inIsDropFrame && inLabel / perMinute % 10 != 0 && inLabel % perMinute < mDropped) {
        return {TimecodeFault::kDroppedNumber, {}};
    }
    std::uint64_t const distance = inIsDropFrame ? FrameOf(inLabel) : inLabel;
    auto const period = static_cast<std::uint64_t>(mFrameRate.GetTicksPerFrame());
    if (distance > (kLargestTicks + inIsNegative) / period) {
        return {TimecodeFault::kTooLarge, {}};
    }
    std::uint64_t const frame = inIsNegative ? 0 - distance : distance;
    return {TimecodeFault::kNone, TickTime(static_cast<std::int64_t>(frame), mFrameRate)};
}

TimecodeReading TimecodeFormat::ToTime(std::string_view inText,
                                       FrameCounting inCounting) const noexcept {
    TypedTimecode const typed(inText, mFrameDigits);
    if (!typed.isGood) {
        return {TimecodeFault::kForm, {}};
    }
    // How many of each unit are in the next larger one, which the first group need not know.
    std::uint64_t const limits[] = {~std::uint64_t{0}, 60, 60, mFramesPerSecond};
    constexpr TimecodeFault kFaults[] = {TimecodeFault::kNone, TimecodeFault::kMinutes,
                                         TimecodeFault::kSeconds, TimecodeFault::kFrames};
    std::uint64_t label = 0;
    for (std::size_t i = typed.first; i < typed.kGroups; ++i) {
        bool const isFirst = i == typed.first;
        if (!isFirst && typed.groups[i] >= limits[i]) {
            return {kFaults[i], {}};
        }
        bool const isTooLarge = (!isFirst && __builtin_mul_overflow(label, limits[i], &label)) ||
                                __builtin_add_overflow(label, typed.groups[i], &label);
        if (isTooLarge || typed.isTooLarge) {
            return {TimecodeFault::kTooLarge, {}};
        }
    }
    bool const isDropFrame = typed.isDropFrame || inCounting == FrameCounting::kDropFrame;
    return TimeOf(label, isDropFrame, typed.isNegative);
}

} // namespace brindle::time
