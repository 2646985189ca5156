#pragma once

#include <brindle/Export.h>
#include <brindle/proplist/PropList.h>
#include <brindle/proplist/PropertyTypes.h>
#include <brindle/proplist/ValueTypes.h>
#include <brindle/utility/TextTypes.h>

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

/// @file
/// The types that `PropList::Get` and `PropList::Set` take, and how they are stored:
///
/// | type | is stored as |
/// |---|---|
/// | `bool` | `bool` |
/// | `std::uint16_t`, `float`, `double` | the same |
/// | other integers of up to 32 bits | `std::int32_t`; `std::uint32_t` if that is needed |
/// | wider integers | `std::int64_t`, `std::uint64_t` |
/// | `std::string`, `std::string_view`, literals, `UTF8String` | `UTF8String` |
/// | `std::u16string`, `std::wstring`, their views and literals, `UTF16String` | `UTF16String` |
/// | `std::vector`, `std::list` of these | an array |
/// | rectangles and points | an array of their numbers: include GeometryValues.h |
/// | `time::TickTime`, `time::FrameRate`, `utility::Guid` | include MediaValues.h |
/// | `filesupport::File`, `filesupport::Dir` | the path as a text: include FileValues.h |
/// | a client's type | as its `PropertyValue` says (ValueTypes.h) |
///
/// Characters are no values, because it is not clear whether one is a text or a number.
///
/// A value is read as another type if nothing is lost: a number as any number type that can hold
/// it, `2.0` as an `int` too, a text as any text type, and an array if each of its elements can be
/// read. A `double` is also read as a `float`, rounded. Flags, numbers and texts are not read as
/// each other. A text that is no well-formed Unicode is stored as it is, but read with U+FFFD for
/// what is malformed when its type changes.
namespace brindle::proplist {

namespace impl {

/// A number of any type of property.
struct AnyNumber {
    enum class Kind : std::uint8_t { kSigned, kUnsigned, kFloating } kind = Kind::kSigned;
    std::int64_t asSigned = 0;
    std::uint64_t asUnsigned = 0;
    double asFloating = 0;
};

// Read a property in the widest form of its kind, or its elements, which are appended. Return
// false, and change nothing, if there is none of that kind under the key.
BRN_API bool ReadNumber(PropList const& inList, UTF8String const& inKey, AnyNumber& outNumber);
BRN_API bool ReadNumbers(PropList const& inList, UTF8String const& inKey,
                         std::vector<AnyNumber>& ioNumbers);
BRN_API bool ReadText(PropList const& inList, UTF8String const& inKey, UTF8String& outText);
BRN_API bool ReadText(PropList const& inList, UTF8String const& inKey, UTF16String& outText);
BRN_API bool ReadTexts(PropList const& inList, UTF8String const& inKey,
                       std::vector<UTF8String>& ioTexts);
BRN_API bool ReadTexts(PropList const& inList, UTF8String const& inKey,
                       std::vector<UTF16String>& ioTexts);

// Convert a number if nothing is lost; return false, and change nothing, otherwise.
BRN_API bool Convert(AnyNumber const& inNumber, std::int64_t& outNumber) noexcept;
BRN_API bool Convert(AnyNumber const& inNumber, std::uint64_t& outNumber) noexcept;
BRN_API bool Convert(AnyNumber const& inNumber, double& outNumber) noexcept;
BRN_API bool Convert(AnyNumber const& inNumber, float& outNumber) noexcept;

template <typename T>
bool ConvertNumber(AnyNumber const& inNumber, T& outNumber) noexcept {
    using Widest = std::conditional_t<
        std::is_same_v<T, float>, float,
        std::conditional_t<std::is_floating_point_v<T>, double,
                           std::conditional_t<std::is_signed_v<T>, std::int64_t, std::uint64_t>>>;
    Widest number{};
    if (!Convert(inNumber, number)) {
        return false;
    }
    auto const narrow = static_cast<T>(number);
    if constexpr (std::is_integral_v<T>) {
        if (static_cast<Widest>(narrow) != number) {
            return false;
        }
    }
    outNumber = narrow;
    return true;
}

BRN_API UTF8String StoredText(std::string_view inText);
BRN_API UTF16String StoredText(std::u16string_view inText);
BRN_API UTF16String StoredText(std::wstring_view inText);
BRN_API void AssignText(UTF8String const& inStored, std::string& outText);
BRN_API void AssignText(UTF16String const& inStored, std::u16string& outText);
BRN_API void AssignText(UTF16String const& inStored, std::wstring& outText);
template <typename Text>
void AssignText(Text const& inStored, Text& outText) {
    outText = inStored;
}

/// A text of the standard library as a property holds it; a null pointer is an empty text.
template <typename T>
auto ToText(T const& inText) {
    if constexpr (kIsAny<T, UTF8String, UTF16String>) {
        return inText;
    } else {
        if constexpr (std::is_pointer_v<T>) {
            if (inText == nullptr) {
                return ToText(std::basic_string<std::remove_cv_t<std::remove_pointer_t<T>>>());
            }
        }
        using View = std::conditional_t<kIsText8<T>, std::string_view,
                                        std::conditional_t<kIsText<T, std::u16string_view>,
                                                           std::u16string_view, std::wstring_view>>;
        return StoredText(View(inText));
    }
}

/// What is stored for one value: of a type of property, or a sequence.
template <typename T>
auto ToStored(T const& inValue) {
    if constexpr (HasStoredForm<T>::value) {
        return ToStored<typename PropertyValue<T>::Stored>(PropertyValue<T>::ToStored(inValue));
    } else if constexpr (kIsNumber<T>) {
        return static_cast<StoredNumber<T>>(inValue);
    } else if constexpr (kIsText8<T> || kIsText16<T>) {
        return ToText(inValue);
    } else {
        return inValue;
    }
}

template <typename T>
void WriteValue(PropList& ioList, UTF8String const& inKey, T const& inValue) {
    if constexpr (HasStoredForm<T>::value) {
        using Stored = typename PropertyValue<T>::Stored;
        WriteValue<Stored>(ioList, inKey, PropertyValue<T>::ToStored(inValue));
    } else if constexpr (HasListForm<T>::value) {
        PropList list;
        PropertyValue<T>::Write(list, inValue);
        *ioList.NewSubList(inKey) = std::move(list);
    } else if constexpr (Sequence<T>::value) {
        using Element = typename T::value_type;
        std::list<decltype(ToStored<Element>(std::declval<Element const&>()))> values;
        for (Element const& element : inValue) {
            values.push_back(ToStored<Element>(element));
        }
        ioList.SetValue(inKey, values);
    } else if constexpr (kIsAny<T, UTF8String, UTF16String>) {
        ioList.SetValue(inKey, inValue);
    } else {
        ioList.SetValue(inKey, ToStored<T>(inValue));
    }
}

template <typename T>
bool ReadValue(PropList const& inList, UTF8String const& inKey, T& outValue);

/// Reads an array as elements of a type of property.
template <typename T>
bool ReadElements(PropList const& inList, UTF8String const& inKey, std::vector<T>& outValues) {
    if constexpr (kIsNumber<T>) {
        std::vector<AnyNumber> numbers;
        if (!ReadNumbers(inList, inKey, numbers)) {
            return false;
        }
        outValues.resize(numbers.size());
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            if (!ConvertNumber(numbers[i], outValues[i])) {
                return false;
            }
        }
        return true;
    } else if constexpr (std::is_same_v<T, bool>) {
        std::list<bool> flags;
        bool const isThere = inList.GetValue(inKey, flags);
        outValues.assign(flags.begin(), flags.end());
        return isThere;
    } else {
        return ReadTexts(inList, inKey, outValues);
    }
}

/// Converts an element from the type that it was read as.
template <typename T, typename Stored>
bool FromStored(Stored const& inStored, T& outValue) {
    if constexpr (HasStoredForm<T>::value) {
        typename PropertyValue<T>::Stored stored{};
        return FromStored(inStored, stored) && PropertyValue<T>::FromStored(stored, outValue);
    } else if constexpr (kIsText8<T> || kIsText16<T>) {
        AssignText(inStored, outValue);
        return true;
    } else {
        outValue = inStored;
        return true;
    }
}

template <typename T>
bool ReadSequence(PropList const& inList, UTF8String const& inKey, T& outValues) {
    using Element = typename T::value_type;
    if constexpr (kIsBorrowedText<Element>) {
        static_assert(kNoValue<T>, "read texts as std::string or UTF8String");
        return false;
    } else {
        std::vector<typename StoredElement<Element>::Type> stored;
        if (!ReadElements(inList, inKey, stored)) {
            return false;
        }
        T values;
        for (auto const& each : stored) {
            Element element{};
            if (!FromStored<Element>(each, element)) {
                return false;
            }
            values.push_back(std::move(element));
        }
        outValues = std::move(values);
        return true;
    }
}

template <typename T>
bool ReadValue(PropList const& inList, UTF8String const& inKey, T& outValue) {
    if constexpr (HasStoredForm<T>::value) {
        typename PropertyValue<T>::Stored stored{};
        T value = outValue; // the client's function may change what it then refuses
        if (!ReadValue(inList, inKey, stored) || !PropertyValue<T>::FromStored(stored, value)) {
            return false;
        }
        outValue = std::move(value);
        return true;
    } else if constexpr (HasListForm<T>::value) {
        PropList const* const list = inList.GetSubList(inKey);
        T value = outValue;
        if (list == nullptr || !PropertyValue<T>::Read(*list, value)) {
            return false;
        }
        outValue = std::move(value);
        return true;
    } else if constexpr (Sequence<T>::value) {
        return ReadSequence(inList, inKey, outValue);
    } else if constexpr (std::is_same_v<T, bool>) {
        return inList.GetValue(inKey, outValue);
    } else if constexpr (kIsNumber<T>) {
        StoredNumber<T> stored{};
        if (sizeof stored == sizeof(T) && inList.GetValue(inKey, stored)) {
            outValue = static_cast<T>(stored);
            return true;
        }
        AnyNumber number;
        return ReadNumber(inList, inKey, number) && ConvertNumber(number, outValue);
    } else {
        ReadAs<T> text;
        if (!ReadText(inList, inKey, text)) {
            return false;
        }
        AssignText(text, outValue);
        return true;
    }
}

} // namespace impl

template <typename T>
typename impl::Gotten<T>::Type PropList::Get(PropertyKey const& inKey, T inDefault) const {
    using Value = typename impl::Gotten<T>::Type;
    if constexpr (impl::CheckIsValue<T>()) {
        if constexpr (std::is_pointer_v<T>) {
            Value value;
            if (!impl::ReadValue(*this, inKey, value) && inDefault != nullptr) {
                value = inDefault;
            }
            return value;
        } else if constexpr (std::is_same_v<Value, T>) {
            impl::ReadValue(*this, inKey, inDefault);
            return inDefault;
        } else {
            Value value(inDefault);
            impl::ReadValue(*this, inKey, value);
            return value;
        }
    } else {
        return inDefault;
    }
}

template <typename T>
bool PropList::TryGet(PropertyKey const& inKey, T& outValue) const {
    if constexpr (impl::CheckIsValue<T>()) {
        static_assert(!impl::kIsBorrowedText<T>, "read a text into a std::string or UTF8String");
        return impl::ReadValue(*this, inKey, outValue);
    }
    return false;
}

template <typename T>
void PropList::Set(PropertyKey const& inKey, T const& inValue) {
    using Value = std::decay_t<T const&>;
    if constexpr (impl::CheckIsValue<Value>()) {
        impl::WriteValue<Value>(*this, inKey, inValue);
    }
}

} // namespace brindle::proplist
