#include <brindle/utility/Numbers.h>

#include <brindle/utility/StringUtils.h>

#include "utility/src/base/CharConversions.h"
#include "utility/src/numbers/NumberReading.h"
#include "utility/src/numbers/Separators.h"
#include <brindle/utility/Digits.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace brindle::utility {

namespace {

/// A longer fixed form is replaced by one with an exponent.
constexpr std::size_t kLongestFixedForm = 22;
constexpr int kMostFixedDecimals = static_cast<int>(kLongestFixedForm) - 2;
constexpr double kLeastWithoutFixedForm = 1e22;
constexpr double kLeastWithoutInteger = 2147483648.0;
constexpr int kDefaultDecimals = 6;

/// White space of the classic locale.
constexpr bool IsSpace(std::uint16_t inUnit) {
    return inUnit == ' ' || (inUnit >= '\t' && inUnit <= '\r');
}

/// The digits of a number, before they are padded and grouped.
class Digits {
public:
    /// `inMagnitude` is not below 0.
    Digits(double inMagnitude, int inDecimals) {
        if (inDecimals == 0) {
            double const rounded = std::floor(inMagnitude + 0.5);
            if (rounded < kLeastWithoutInteger) {
                Print(static_cast<std::uint32_t>(rounded));
                return;
            }
        } else if (!std::isfinite(inMagnitude) ||
                   (inMagnitude < kLeastWithoutFixedForm && inDecimals <= kMostFixedDecimals)) {
            Print(inMagnitude, std::chars_format::fixed,
                  inDecimals < 0 ? kDefaultDecimals : inDecimals);
            if (Text().size() <= kLongestFixedForm && Text()[0] != '-') {
                return;
            }
        }
        Print(inMagnitude, std::chars_format::scientific, kDefaultDecimals);
        mHasExponent = true;
    }

    std::string_view Text() const { return {mText, static_cast<std::size_t>(mEnd - mText)}; }
    bool HasExponent() const { return mHasExponent; }

private:
    template <typename Number, typename... Format>
    void Print(Number inMagnitude, Format... inFormat) {
        mEnd = ToChars(mText, mText + sizeof mText, inMagnitude, inFormat...).ptr;
    }

    char mText[64]; ///< 22 integer digits, the point and 20 decimals fit
    char* mEnd = mText;
    bool mHasExponent = false;
};

std::string_view WithoutZeros(std::string_view inFraction) {
    auto const last = inFraction.find_last_not_of('0');
    return inFraction.substr(0, last == 0 ? 0 : last + 1);
}

void AppendSign(UTF16String& ioText, bool inIsNegative, bool inIsZero,
                Flags<std::uint16_t> inFlags) {
    if (inIsNegative) {
        ioText += u'-';
    } else if (inFlags.Has(kNumberFormat_ForcePlus)) {
        if (!inIsZero || !inFlags.Has(kNumberFormat_NoPlusOnZero)) {
            ioText += u'+';
        }
    } else if (inFlags.Has(kNumberFormat_SpaceForPlus)) {
        ioText += u' ';
    }
}

void AppendDigits(UTF16String& ioText, std::string_view inDigits, bool inIsGrouped) {
    for (std::size_t i = 0; i < inDigits.size(); ++i) {
        if (inIsGrouped && i != 0 && (inDigits.size() - i) % 3 == 0) {
            ioText += u',';
        }
        ioText += static_cast<std::uint16_t>(inDigits[i]);
    }
}

/// The text, which is in the neutral form, in the form that the flags ask for.
UTF16String InFormOf(Flags<std::uint16_t> inFlags, UTF16String inText) {
    if (!inFlags.Has(kNumberFormat_NoInternationalize)) {
        InternationalizeNum(inText);
    }
    return inText;
}

UTF16String FormatInteger(std::uint64_t inMagnitude, bool inIsNegative,
                          Flags<std::uint16_t> inFlags) {
    char digits[24];
    auto const* const end = std::to_chars(digits, digits + sizeof digits, inMagnitude).ptr;
    UTF16String text;
    AppendSign(text, inIsNegative, inMagnitude == 0, inFlags);
    AppendDigits(text, {digits, static_cast<std::size_t>(end - digits)},
                 inFlags.Has(kNumberFormat_Group));
    return InFormOf(inFlags, std::move(text));
}

template <typename Integer>
UTF16String IntegerToString(Integer inValue, int inBase) {
    char text[24];
    char* const end = std::to_chars(text, text + sizeof text, inValue, inBase).ptr;
    return UTF16String(text, end);
}

/// Gives the units of a text one after the other, in the neutral form and without commas.
class NeutralUnits {
public:
    NeutralUnits(std::uint16_t const* inBegin, std::uint16_t const* inEnd,
                 std::optional<platform::NumberSeparators> inUser)
        : mNext(inBegin), mEnd(inEnd), mUser(inUser) {
        Advance();
    }

    /// 0 at the end.
    std::uint16_t Current() const { return mCurrent; }

    void Advance() {
        do {
            if (mNext == mEnd) {
                mCurrent = 0;
                return;
            }
            mCurrent = mUser ? ToNeutralForm(*mNext, *mUser) : *mNext;
            ++mNext;
        } while (mCurrent == u',');
    }

    /// Appends the current unit to a text and goes on.
    void MoveTo(std::string& ioText) {
        ioText += static_cast<char>(mCurrent);
        Advance();
    }

    /// The same for a run of digits. Returns false if there are none.
    bool MoveDigitsTo(std::string& ioText) {
        auto const size = ioText.size();
        while (IsDigit(mCurrent)) {
            MoveTo(ioText);
        }
        return ioText.size() != size;
    }

private:
    std::uint16_t const* mNext;
    std::uint16_t const* mEnd;
    std::optional<platform::NumberSeparators> mUser;
    std::uint16_t mCurrent = 0;
};

} // namespace

std::uint16_t ToNarrowForm(std::uint16_t inUnit) noexcept {
    if (inUnit < u'\u3001') {
        return inUnit;
    }
    if (inUnit <= u'\u3002') {
        return inUnit == u'\u3001' ? u',' : u'.';
    }
    ToNumericCase(inUnit);
    return inUnit;
}

std::uint16_t ToNeutralForm(std::uint16_t inUnit, platform::NumberSeparators inUser) noexcept {
    auto const unit = ToNarrowForm(inUnit);
    return unit == inUser.decimal ? u'.' : unit == inUser.thousands ? u',' : unit;
}

double ReadNumber(std::uint16_t const* inBegin, std::uint16_t const* inEnd,
                  std::optional<platform::NumberSeparators> inUser) {
    NeutralUnits units(inBegin, inEnd, inUser);
    while (IsSpace(units.Current())) {
        units.Advance();
    }
    std::string text;
    if (units.Current() == u'-') {
        units.MoveTo(text);
    } else if (units.Current() == u'+') {
        units.Advance();
    }
    bool hasDigits = units.MoveDigitsTo(text);
    if (units.Current() == u'.') {
        units.MoveTo(text);
        hasDigits |= units.MoveDigitsTo(text);
    }
    if (hasDigits && (units.Current() == u'e' || units.Current() == u'E')) {
        units.MoveTo(text);
        if (units.Current() == u'+' || units.Current() == u'-') {
            units.MoveTo(text);
        }
        hasDigits = units.MoveDigitsTo(text);
    }
    double value = 0.0;
    if (hasDigits) {
        // Leaves `value` alone if the number is out of range in either direction.
        FromChars(text.data(), text.data() + text.size(), value);
    }
    return value;
}

UTF16String NumberToString(std::int32_t inValue) {
    return IntegerToString(inValue, 10);
}

UTF16String NumberToString(std::int64_t inValue) {
    return IntegerToString(inValue, 10);
}

UTF16String NumberToString(std::uint64_t inValue) {
    return IntegerToString(inValue, 10);
}

UTF16String NumberToString(std::int64_t inValue, Flags<std::uint16_t> inFlags) {
    auto const bits = static_cast<std::uint64_t>(inValue);
    return FormatInteger(inValue < 0 ? 0 - bits : bits, inValue < 0, inFlags);
}

UTF16String NumberToString(std::uint64_t inValue, Flags<std::uint16_t> inFlags) {
    return FormatInteger(inValue, false, inFlags);
}

UTF16String NumberToHexString(std::int32_t inValue) {
    UTF16String text = IntegerToString(static_cast<std::uint32_t>(inValue), 16);
    for (auto& unit : text) {
        unit = static_cast<std::uint16_t>(IsDigit(unit) ? unit : unit - u'a' + u'A');
    }
    return text;
}

UTF16String NumberToString(double inValue) {
    return NumberToString(inValue, 1, 2, 0);
}

UTF16String NumberToString(double inValue, int inMinIntegerDigits, int inDecimals,
                           Flags<std::uint16_t> inFlags) {
    bool const isZero = inValue == 0.0;
    bool const isNegative = inValue < 0.0;
    Digits const digits(isZero ? 0.0 : isNegative ? -inValue : inValue, inDecimals);
    bool const isFixed = !digits.HasExponent();

    auto const integer = digits.Text().substr(0, digits.Text().find('.'));
    auto fraction = digits.Text().substr(integer.size());
    if (isFixed && inFlags.Has(kNumberFormat_TrimZeros)) {
        fraction = WithoutZeros(fraction);
    }
    auto const least = static_cast<std::size_t>(isFixed ? std::max(inMinIntegerDigits, 0) : 0);
    auto const count = std::max(least, integer.size());
    auto const padding = count - integer.size();
    bool const isGrouped = isFixed && inFlags.Has(kNumberFormat_Group);

    UTF16String text;
    text.reserve(1 + count + (isGrouped ? count / 3 : 0) + fraction.size());
    AppendSign(text, isNegative, isZero, inFlags);
    std::string padded(padding, inFlags.Has(kNumberFormat_PadWithSpaces) ? ' ' : '0');
    AppendDigits(text, padded.append(integer), isGrouped);
    text.append(fraction.begin(), fraction.end());
    return InFormOf(inFlags, std::move(text));
}

double StringToNumber(UTF16String const& inText, Flags<std::uint16_t> inFlags) {
    bool const isNeutral = inFlags.Has(kNumberParse_NoDeInternationalize);
    return ReadNumber(inText.data(), inText.data() + inText.size(),
                      isNeutral ? std::nullopt : std::make_optional(UserSeparators()));
}

void InternationalizeNum(UTF16String& ioText) {
    auto const user = UserSeparators();
    for (std::size_t i = 0; i + 1 < ioText.size(); ++i) {
        if (IsDigit(ioText[i + 1])) {
            auto& unit = ioText[i];
            unit = unit == u'.' ? user.decimal : unit == u',' ? user.thousands : unit;
        }
    }
}

void DeInternationalizeNum(UTF16String& ioText) {
    auto const user = UserSeparators();
    for (auto& unit : ioText) {
        unit = ToNeutralForm(unit, user);
    }
}

} // namespace brindle::utility
