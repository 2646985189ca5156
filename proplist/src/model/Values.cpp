#include <brindle/proplist/Values.h>

#include <brindle/utility/TextConversions.h>

#include <cmath>
#include <limits>

namespace brindle::proplist::impl {

namespace {

template <typename T>
AnyNumber WidestForm(T inNumber) noexcept {
    AnyNumber number;
    if constexpr (std::is_floating_point_v<T>) {
        number.kind = AnyNumber::Kind::kFloating;
        number.asFloating = inNumber;
    } else if constexpr (std::is_signed_v<T>) {
        number.asSigned = inNumber;
    } else {
        number.kind = AnyNumber::Kind::kUnsigned;
        number.asUnsigned = inNumber;
    }
    return number;
}

/// Converts an integer or a double to an integer if nothing is lost.
template <typename To, typename From>
bool ToInteger(From inNumber, To& outNumber) noexcept {
    using Limits = std::numeric_limits<To>;
    if constexpr (std::is_floating_point_v<From>) {
        // The greatest integer need not be a double, but the next one is. A NaN fails as well.
        double const beyond = std::ldexp(1.0, Limits::digits);
        double const least = std::is_signed_v<To> ? -beyond : 0.0;
        if (!(inNumber >= least && inNumber < beyond) || std::trunc(inNumber) != inNumber) {
            return false;
        }
    } else if constexpr (std::is_signed_v<From> && !std::is_signed_v<To>) {
        if (inNumber < 0) {
            return false;
        }
    } else if constexpr (!std::is_signed_v<From> && std::is_signed_v<To>) {
        if (inNumber > static_cast<From>(Limits::max())) {
            return false;
        }
    }
    outNumber = static_cast<To>(inNumber);
    return true;
}

template <typename T>
bool ConvertToInteger(AnyNumber const& inNumber, T& outNumber) noexcept {
    switch (inNumber.kind) {
    case AnyNumber::Kind::kSigned:
        return ToInteger(inNumber.asSigned, outNumber);
    case AnyNumber::Kind::kUnsigned:
        return ToInteger(inNumber.asUnsigned, outNumber);
    case AnyNumber::Kind::kFloating:
        break;
    }
    return ToInteger(inNumber.asFloating, outNumber);
}

/// Converts an integer to a floating-point number if it comes back as the same integer.
template <typename T, typename Integer>
bool ToFloating(Integer inNumber, T& outNumber) noexcept {
    auto const number = static_cast<T>(inNumber);
    Integer back{};
    if (!ToInteger(static_cast<double>(number), back) || back != inNumber) {
        return false;
    }
    outNumber = number;
    return true;
}

template <typename T>
bool ConvertToFloating(AnyNumber const& inNumber, T& outNumber) noexcept {
    switch (inNumber.kind) {
    case AnyNumber::Kind::kSigned:
        return ToFloating(inNumber.asSigned, outNumber);
    case AnyNumber::Kind::kUnsigned:
        return ToFloating(inNumber.asUnsigned, outNumber);
    case AnyNumber::Kind::kFloating:
        break;
    }
    double const number = inNumber.asFloating;
    if (std::isfinite(number) && std::abs(number) > double{std::numeric_limits<T>::max()}) {
        return false;
    }
    outNumber = static_cast<T>(number);
    return true;
}

/// Calls the function with the scalar under the key, if it is of a type that `IsRight` names.
/// Returns whether it is.
template <template <typename> class IsRight, typename Function>
bool VisitScalar(PropList const& inList, UTF8String const& inKey, Function inFunction) {
    bool isThere = false;
    VisitPropertyType(inList.GetPropertyType(inKey), [&](auto inType) {
        using T = typename decltype(inType)::Type;
        if constexpr (IsRight<T>::value) {
            T value{};
            isThere = inList.GetValue(inKey, value);
            if (isThere) {
                inFunction(value);
            }
        }
    });
    return isThere;
}

/// Appends what the function makes of each element of the array under the key, if it is of a type
/// that `IsRight` names. Returns whether it is.
template <template <typename> class IsRight, typename Value, typename Function>
bool AppendElements(PropList const& inList, UTF8String const& inKey, std::vector<Value>& ioValues,
                    Function inFunction) {
    bool isThere = false;
    VisitPropertyType(inList.GetPropertyType(inKey), [&](auto inType) {
        using T = typename decltype(inType)::Type;
        if constexpr (IsRight<T>::value) {
            std::list<T> elements;
            isThere = inList.GetValue(inKey, elements);
            ioValues.reserve(ioValues.size() + elements.size());
            for (auto const& element : elements) {
                ioValues.push_back(inFunction(element));
            }
        }
    });
    return isThere;
}

template <typename T>
using IsNumberType = std::bool_constant<kIsNumber<T>>;
template <typename T>
using IsTextType = std::bool_constant<kIsAny<T, UTF8String, UTF16String>>;

template <typename To, typename From>
To TextAs(From const& inText) {
    if constexpr (std::is_same_v<To, From>) {
        return inText;
    } else if constexpr (std::is_same_v<To, UTF8String>) {
        return utility::Utf8(inText);
    } else {
        return utility::Utf16(inText);
    }
}

template <typename Text>
bool ReadAnyText(PropList const& inList, UTF8String const& inKey, Text& outText) {
    return VisitScalar<IsTextType>(
        inList, inKey, [&outText](auto const& inText) { outText = TextAs<Text>(inText); });
}

template <typename Text>
bool ReadAnyTexts(PropList const& inList, UTF8String const& inKey, std::vector<Text>& ioTexts) {
    return AppendElements<IsTextType>(inList, inKey, ioTexts,
                                      [](auto const& inText) { return TextAs<Text>(inText); });
}

} // namespace

bool ReadNumber(PropList const& inList, UTF8String const& inKey, AnyNumber& outNumber) {
    return VisitScalar<IsNumberType>(
        inList, inKey, [&outNumber](auto inNumber) { outNumber = WidestForm(inNumber); });
}

bool ReadNumbers(PropList const& inList, UTF8String const& inKey,
                 std::vector<AnyNumber>& ioNumbers) {
    return AppendElements<IsNumberType>(inList, inKey, ioNumbers,
                                        [](auto inNumber) { return WidestForm(inNumber); });
}

bool ReadText(PropList const& inList, UTF8String const& inKey, UTF8String& outText) {
    return ReadAnyText(inList, inKey, outText);
}

bool ReadText(PropList const& inList, UTF8String const& inKey, UTF16String& outText) {
    return ReadAnyText(inList, inKey, outText);
}

bool ReadTexts(PropList const& inList, UTF8String const& inKey, std::vector<UTF8String>& ioTexts) {
    return ReadAnyTexts(inList, inKey, ioTexts);
}

bool ReadTexts(PropList const& inList, UTF8String const& inKey, std::vector<UTF16String>& ioTexts) {
    return ReadAnyTexts(inList, inKey, ioTexts);
}

bool Convert(AnyNumber const& inNumber, std::int64_t& outNumber) noexcept {
    return ConvertToInteger(inNumber, outNumber);
}

bool Convert(AnyNumber const& inNumber, std::uint64_t& outNumber) noexcept {
    return ConvertToInteger(inNumber, outNumber);
}

bool Convert(AnyNumber const& inNumber, double& outNumber) noexcept {
    return ConvertToFloating(inNumber, outNumber);
}

bool Convert(AnyNumber const& inNumber, float& outNumber) noexcept {
    return ConvertToFloating(inNumber, outNumber);
}

UTF8String StoredText(std::string_view inText) {
    return utility::Utf8(inText);
}

UTF16String StoredText(std::u16string_view inText) {
    return {inText.begin(), inText.end()};
}

UTF16String StoredText(std::wstring_view inText) {
    return utility::Utf16(inText);
}

void AssignText(UTF8String const& inStored, std::string& outText) {
    outText = utility::View(inStored);
}

void AssignText(UTF16String const& inStored, std::u16string& outText) {
    outText.assign(inStored.begin(), inStored.end());
}

void AssignText(UTF16String const& inStored, std::wstring& outText) {
    outText = utility::ToStdWide(inStored);
}

} // namespace brindle::proplist::impl
