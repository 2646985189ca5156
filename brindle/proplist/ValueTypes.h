#pragma once

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
/// Which types are values of property lists, and as what type of property each is stored. Values.h
/// includes this and tells clients about it.
namespace brindle::proplist {

class PropList;

/// To be specialised for a client's type that `Get` and `Set` are to take, by one of two forms:
///
///     template <>
///     struct proplist::PropertyValue<Volume> { // as another value, here a number; also in vectors
///         using Stored = double;
///         static Stored ToStored(Volume inVolume) { return inVolume.decibels; }
///         static bool FromStored(Stored inStored, Volume& outVolume); // false: no such value
///     };
///     template <>
///     struct proplist::PropertyValue<Account> { // as a nested list
///         static void Write(PropList& ioList, Account const& inAccount);
///         static bool Read(PropList const& inList, Account& outAccount);
///     };
template <typename T>
struct PropertyValue;

namespace impl {

template <typename T, typename... Types>
constexpr bool kIsAny = (std::is_same_v<T, Types> || ...);

template <typename T>
constexpr bool kIsCharacter = kIsAny<T, char, wchar_t, char16_t, char32_t>;
template <typename T>
constexpr bool kIsNumber = std::is_arithmetic_v<T> && !std::is_same_v<T, bool> && !kIsCharacter<T>;

template <typename T, typename View>
constexpr bool kIsText =
    std::is_convertible_v<T const&, View> && !std::is_same_v<T, std::nullptr_t>;
template <typename T>
constexpr bool kIsText8 = std::is_same_v<T, UTF8String> || kIsText<T, std::string_view>;
template <typename T>
constexpr bool kIsText16 = std::is_same_v<T, UTF16String> || kIsText<T, std::u16string_view> ||
                           kIsText<T, std::wstring_view>;

template <typename T>
struct Sequence : std::false_type {};
template <typename T, typename Allocator>
struct Sequence<std::vector<T, Allocator>> : std::true_type {};
template <typename T, typename Allocator>
struct Sequence<std::list<T, Allocator>> : std::true_type {};

template <typename T, typename = void>
struct HasStoredForm : std::false_type {};
template <typename T>
struct HasStoredForm<T, std::void_t<typename PropertyValue<T>::Stored>> : std::true_type {};

template <typename T, typename = void>
struct HasListForm : std::false_type {};
template <typename T>
struct HasListForm<T, std::void_t<decltype(PropertyValue<T>::Write(std::declval<PropList&>(),
                                                                   std::declval<T const&>()))>>
    : std::true_type {};

/// True for texts that belong to somebody else, as literals and views do.
template <typename T>
constexpr bool kIsBorrowedText = (kIsText8<T> || kIsText16<T>)&&(
    std::is_pointer_v<T> || kIsAny<T, std::string_view, std::u16string_view, std::wstring_view>);

/// The type of the property that holds a number.
template <typename T>
using StoredNumber = std::conditional_t<
    std::is_floating_point_v<T>, std::conditional_t<std::is_same_v<T, float>, float, double>,
    std::conditional_t<
        std::is_same_v<T, std::uint16_t>, std::uint16_t,
        std::conditional_t<
            (sizeof(T) < 4), std::int32_t,
            std::conditional_t<
                sizeof(T) == 4,
                std::conditional_t<std::is_signed_v<T>, std::int32_t, std::uint32_t>,
                std::conditional_t<std::is_signed_v<T>, std::int64_t, std::uint64_t>>>>>;

/// The type of property as which a flag, a number, a text or an element of an array is read.
template <typename T>
using ReadAs =
    std::conditional_t<kIsText8<T>, UTF8String, std::conditional_t<kIsText16<T>, UTF16String, T>>;

template <typename T, bool = HasStoredForm<T>::value>
struct StoredElement {
    using Type = ReadAs<T>;
};
template <typename T>
struct StoredElement<T, true> : StoredElement<typename PropertyValue<T>::Stored> {};

template <typename T>
constexpr bool kNoValue = false;

/// Fails to compile for what is no value, with one reason.
template <typename T>
constexpr bool CheckIsValue() {
    constexpr bool isPointer =
        std::is_pointer_v<T> || std::is_null_pointer_v<T> || std::is_member_pointer_v<T>;
    if constexpr (HasStoredForm<T>::value || HasListForm<T>::value) {
        return true;
    } else if constexpr (Sequence<T>::value) {
        using Element = typename T::value_type;
        if constexpr (HasListForm<Element>::value ||
                      Sequence<typename StoredElement<Element>::Type>::value) {
            static_assert(kNoValue<T>,
                          "the elements of an array are single flags, numbers or texts");
            return false;
        } else {
            return CheckIsValue<Element>();
        }
    } else if constexpr (kIsCharacter<T>) {
        static_assert(kNoValue<T>, "a character is no value: store a text, or an int");
        return false;
    } else if constexpr (kIsNumber<T> || std::is_same_v<T, bool> || kIsText8<T> || kIsText16<T>) {
        return true;
    } else {
        static_assert(!isPointer || kNoValue<T>, "a pointer is no value");
        static_assert(isPointer || kNoValue<T>,
                      "no value of a property list: specialise PropertyValue for this type, or "
                      "include GeometryValues.h, MediaValues.h or FileValues.h");
        return false;
    }
}

template <typename T>
struct Gotten {
    using OwnText = std::conditional_t<
        kIsText8<T>, std::string,
        std::conditional_t<kIsText<T, std::u16string_view>, std::u16string, std::wstring>>;
    using Type = std::conditional_t<kIsBorrowedText<T>, OwnText, T>;
};

} // namespace impl

} // namespace brindle::proplist
