#pragma once

#include <brindle/Export.h>
#include <brindle/proplist/PropertyTypes.h>
#include <brindle/utility/TextTypes.h>

#include <cstdint>
#include <list>
#include <memory>
#include <string_view>
#include <type_traits>
#include <vector>

namespace brindle::proplist {

class PropListIterator;

namespace impl {

struct PropNodeSlot;
using PropNodeBlocks = std::vector<std::vector<PropNodeSlot>>;

struct PropListAccess;

/// The property's type for an integer type that may be another name of the same thing.
template <typename T>
using SameInteger = std::enable_if_t<
    std::is_same_v<T, long> || std::is_same_v<T, unsigned long> || std::is_same_v<T, long long> ||
        std::is_same_v<T, unsigned long long>,
    std::conditional_t<sizeof(T) == sizeof(std::int64_t),
                       std::conditional_t<std::is_signed_v<T>, std::int64_t, std::uint64_t>,
                       std::conditional_t<std::is_signed_v<T>, std::int32_t, std::uint32_t>>>;

/// Enables a template for keys in types of the standard library.
template <typename Key>
using IfStandardKey =
    std::enable_if_t<std::is_convertible_v<Key const&, std::string_view>, UTF8String>;

template <typename Key>
IfStandardKey<Key> KeyOf(Key const& inKey) {
    std::string_view const key = inKey;
    return UTF8String(key.begin(), key.end());
}

// Whether `SetValue` and `GetValue` take a type. What they do not take matches an overload of its
// own, so that a mistake is one error and not a list of all overloads.

template <typename Key>
constexpr bool kIsKey = std::is_convertible_v<Key const&, UTF8String const&> ||
                        std::is_convertible_v<Key const&, std::string_view>;

template <typename T>
constexpr bool kIsStorableScalar = std::is_arithmetic_v<T> || std::is_enum_v<T>;
template <>
inline constexpr bool kIsStorableScalar<char> = false;
template <>
inline constexpr bool kIsStorableScalar<wchar_t> = false;
template <>
inline constexpr bool kIsStorableScalar<char16_t> = false;
template <>
inline constexpr bool kIsStorableScalar<char32_t> = false;

#define BRN_IS_CONVERTIBLE(Name, T, ...)                                                           \
    || std::is_convertible_v<Value const&, T const&> ||                                            \
        std::is_convertible_v<Value const&, std::list<T> const&>
#define BRN_IS_TARGET(Name, T, ...)                                                                \
    || std::is_convertible_v<Value*, T*> || std::is_convertible_v<Value*, std::list<T>*>
template <typename Value>
constexpr bool kIsStorable = kIsStorableScalar<Value> ||
                             (std::is_class_v<Value> &&
                              (false BRN_PROPERTY_TYPES(BRN_IS_CONVERTIBLE)));
template <typename Value>
constexpr bool kIsReadable = std::is_integral_v<Value> BRN_PROPERTY_TYPES(BRN_IS_TARGET);
#undef BRN_IS_CONVERTIBLE
#undef BRN_IS_TARGET

/// What `Get` returns for a `T`: a text that owns its characters.
template <typename T>
struct Gotten;

} // namespace impl

/// The key of a property, as `Get` and `Set` take it: `"volume"`, a `std::string`, a
/// `std::string_view` or a `UTF8String`. Only for parameters.
///
/// Beside the standard library: as a `std::string_view` for a parameter, which also keeps what it
/// had to convert.
class PropertyKey {
public:
    /// Refers to the key, which must live as long as this object.
    PropertyKey(UTF8String const& inKey) noexcept : mKey(inKey) {}
    /// Copies the bytes of the key.
    template <typename Key, typename = impl::IfStandardKey<Key>>
    PropertyKey(Key const& inKey) : mCopy(impl::KeyOf(inKey)), mKey(mCopy) {}
    PropertyKey(PropertyKey const&) = delete;
    PropertyKey& operator=(PropertyKey const&) = delete;

    /// The key as the other functions take it, valid as long as this object.
    operator UTF8String const&() const noexcept { return mKey; }

private:
    UTF8String const mCopy; ///< empty if the caller's key is a `UTF8String`
    UTF8String const& mKey;
};

/// A typed store of values under keys, which may hold nested lists: the form of preferences and
/// other small documents.
///
///     proplist::PropList preferences;
///     preferences.Set("volume", 0.5);
///     preferences.NewSubList("window")->Set("title", "Bin 1");
///     auto const volume = preferences.Get<double>("volume", 1);
///     for (auto const& entry : preferences) { std::cout << entry.Key() << '\n'; }
///
/// `Get` and `Set` take all usual types and convert where nothing is lost; `GetValue` and
/// `SetValue` take the types of properties and do not convert. Any byte string is a key, the empty
/// one too; keys are compared by their bytes. Lists nest to any depth. A change that throws
/// (`std::bad_alloc`) leaves the list as it was. A list takes no lock: callers serialise access.
///
/// Beside the standard library: as a `std::map` from keys to `std::variant`, sorted and walked by
/// `for`; moved, swapped and compared with all that it holds, but not copied: `Clone` copies.
class BRN_API PropList {
public:
    /// An empty list of the current version.
    PropList() noexcept;
    PropList(PropList const&) = delete;
    PropList& operator=(PropList const&) = delete;
    /// What was moved from is an empty list of the current version. Nested lists stay where they
    /// are in memory. A list may be moved to one that contains it.
    PropList(PropList&& ioOther) noexcept;
    PropList& operator=(PropList&& ioOther) noexcept;

    /// Destroys the nested lists too.
    virtual ~PropList();

    /// A copy of everything, nested lists included. The copy, too, does not replace a file that
    /// could not be read into this list (see `SavePropList`).
    [[nodiscard]] PropList Clone() const;

    /// The value under the key as a `T`, or the default if there is none that can be read as one.
    /// See Values.h for the types, and for what can be read as what. A default that only refers to
    /// a text, such as a literal, gives a `std::string` or `std::u16string`.
    template <typename T>
    [[nodiscard]] typename impl::Gotten<T>::Type Get(PropertyKey const& inKey,
                                                     T inDefault = T()) const;

    /// The same, for telling whether there is such a value: returns false, and leaves `outValue`
    /// as it is, if there is none.
    template <typename T>
    bool TryGet(PropertyKey const& inKey, T& outValue) const;

    /// Stores the value in place of what the key held, whatever its type was.
    template <typename T>
    void Set(PropertyKey const& inKey, T const& inValue);

    /// True for a property of any type, nested lists included.
    [[nodiscard]] bool Has(PropertyKey const& inKey) const;

    /// The entries in the order of their keys (PropListEntry.h). No property may be added or
    /// removed meanwhile; values may be set if they keep their type.
    [[nodiscard]] PropListIterator begin() const noexcept;
    [[nodiscard]] PropListIterator end() const noexcept;

    /// Reads the property into `outValue`, or appends the elements of an array to `ioValues`.
    /// Returns false, and leaves the argument as it is, if there is no property of exactly that
    /// type under the key: `GetPropertyType` tells a missing property from one of another type.
    virtual bool GetValue(UTF8String const& inKey, std::list<double>& ioValues) const;
    virtual bool GetValue(UTF8String const& inKey, double& outValue) const;
    virtual bool GetValue(UTF8String const& inKey, std::list<float>& ioValues) const;
    virtual bool GetValue(UTF8String const& inKey, float& outValue) const;
    virtual bool GetValue(UTF8String const& inKey, std::list<std::uint64_t>& ioValues) const;
    virtual bool GetValue(UTF8String const& inKey, std::uint64_t& outValue) const;
    virtual bool GetValue(UTF8String const& inKey, std::list<std::int64_t>& ioValues) const;
    virtual bool GetValue(UTF8String const& inKey, std::int64_t& outValue) const;
    virtual bool GetValue(UTF8String const& inKey, std::list<std::int32_t>& ioValues) const;
    virtual bool GetValue(UTF8String const& inKey, std::int32_t& outValue) const;
    virtual bool GetValue(UTF8String const& inKey, std::list<std::uint32_t>& ioValues) const;
    virtual bool GetValue(UTF8String const& inKey, std::uint32_t& outValue) const;
    virtual bool GetValue(UTF8String const& inKey, std::list<std::uint16_t>& ioValues) const;
    virtual bool GetValue(UTF8String const& inKey, std::uint16_t& outValue) const;
    virtual bool GetValue(UTF8String const& inKey, std::list<bool>& ioValues) const;
    virtual bool GetValue(UTF8String const& inKey, bool& outValue) const;
    virtual bool GetValue(UTF8String const& inKey, std::list<UTF8String>& ioValues) const;
    virtual bool GetValue(UTF8String const& inKey, UTF8String& outValue) const;
    virtual bool GetValue(UTF8String const& inKey, std::list<UTF16String>& ioValues) const;
    virtual bool GetValue(UTF8String const& inKey, UTF16String& outValue) const;

    /// Stores the value, or an array of the values, in place of what the key held, whatever its
    /// type was. An empty array is a property too.
    virtual void SetValue(UTF8String const& inKey, std::list<double> const& inValues);
    virtual void SetValue(UTF8String const& inKey, double const& inValue);
    virtual void SetValue(UTF8String const& inKey, std::list<float> const& inValues);
    virtual void SetValue(UTF8String const& inKey, float const& inValue);
    virtual void SetValue(UTF8String const& inKey, std::list<std::uint64_t> const& inValues);
    virtual void SetValue(UTF8String const& inKey, std::uint64_t const& inValue);
    virtual void SetValue(UTF8String const& inKey, std::list<std::int64_t> const& inValues);
    virtual void SetValue(UTF8String const& inKey, std::int64_t const& inValue);
    virtual void SetValue(UTF8String const& inKey, std::list<std::int32_t> const& inValues);
    virtual void SetValue(UTF8String const& inKey, std::int32_t const& inValue);
    virtual void SetValue(UTF8String const& inKey, std::list<std::uint32_t> const& inValues);
    virtual void SetValue(UTF8String const& inKey, std::uint32_t const& inValue);
    virtual void SetValue(UTF8String const& inKey, std::list<std::uint16_t> const& inValues);
    virtual void SetValue(UTF8String const& inKey, std::uint16_t const& inValue);
    virtual void SetValue(UTF8String const& inKey, std::list<bool> const& inValues);
    virtual void SetValue(UTF8String const& inKey, bool const& inValue);
    virtual void SetValue(UTF8String const& inKey, std::list<UTF8String> const& inValues);
    virtual void SetValue(UTF8String const& inKey, UTF8String const& inValue);
    virtual void SetValue(UTF8String const& inKey, std::list<UTF16String> const& inValues);
    virtual void SetValue(UTF8String const& inKey, UTF16String const& inValue);

    /// Integer types that are none of the above, but as wide as one, as `long long` often is.
    template <typename T, typename Same = impl::SameInteger<T>>
    void SetValue(UTF8String const& inKey, T inValue) {
        SetValue(inKey, static_cast<Same const&>(static_cast<Same>(inValue)));
    }
    template <typename T, typename Same = impl::SameInteger<T>>
    bool GetValue(UTF8String const& inKey, T& outValue) const {
        Same value{};
        if (!GetValue(inKey, value)) {
            return false;
        }
        outValue = static_cast<T>(value);
        return true;
    }

    /// Keys without `_utf8`.
    template <typename Key, typename T, typename = impl::IfStandardKey<Key>>
    std::enable_if_t<impl::kIsStorable<T>> SetValue(Key const& inKey, T const& inValue) {
        SetValue(impl::KeyOf(inKey), inValue);
    }
    template <typename Key, typename T, typename = impl::IfStandardKey<Key>>
    std::enable_if_t<impl::kIsReadable<T>, bool> GetValue(Key const& inKey, T& ioValue) const {
        return GetValue(impl::KeyOf(inKey), ioValue);
    }

    /// What is not a key, or not of a property's type, fails to compile with one reason.
    template <typename Key, typename T>
    std::enable_if_t<!(impl::kIsKey<Key> && impl::kIsStorable<T>)&&!std::is_null_pointer_v<T>>
    SetValue(Key const&, T const&) {
        static_assert(impl::kIsKey<Key>,
                      "a key is a UTF8String, or a text of the standard library");
        static_assert(!impl::kIsKey<Key> || impl::kIsStorable<T>,
                      "this is not the type of a property: Set takes every usual type");
    }
    template <typename Key, typename T>
    std::enable_if_t<!(impl::kIsKey<Key> && impl::kIsReadable<T>), bool> GetValue(Key const&,
                                                                                  T&) const {
        static_assert(impl::kIsKey<Key>,
                      "a key is a UTF8String, or a text of the standard library");
        static_assert(!impl::kIsKey<Key> || impl::kIsReadable<T>,
                      "this is not the type of a property: Get takes every usual type");
        return false;
    }

    /// A pointer, a string literal among them, would be stored as a `bool`, and a character as a
    /// number. Texts are written with `_utf8` or `_utf16` behind the literal, or stored by `Set`.
    template <typename T>
    void SetValue(UTF8String const&, T const*) {
        static_assert(brindle::utility::impl::kNever<T>,
                      "a pointer is no value; Set stores a text, or write _utf8 behind it");
    }
    void SetValue(UTF8String const& inKey, char inCharacter) = delete;
    void SetValue(UTF8String const& inKey, wchar_t inCharacter) = delete;
    void SetValue(UTF8String const& inKey, char16_t inCharacter) = delete;
    void SetValue(UTF8String const& inKey, char32_t inCharacter) = delete;

    /// The nested list under the key, or null if there is none. The property owns it: it is
    /// destroyed when the property is removed or replaced, or this list is cleared or destroyed.
    [[nodiscard]] virtual PropList* GetSubList(UTF8String const& inKey) const;

    /// The nested list under the key, with its contents; if there is none, a new and empty one in
    /// place of what the key held. The property owns it, as above.
    virtual PropList* NewSubList(UTF8String const& inKey);

    /// The same for keys without `_utf8`.
    template <typename Key, typename = impl::IfStandardKey<Key>>
    [[nodiscard]] PropList* GetSubList(Key const& inKey) const {
        return GetSubList(impl::KeyOf(inKey));
    }
    template <typename Key, typename = impl::IfStandardKey<Key>>
    PropList* NewSubList(Key const& inKey) {
        return NewSubList(impl::KeyOf(inKey));
    }

    /// Removes all properties. The version stays.
    virtual void Clear();

    /// Appends the list as an XML element, with its properties in the order of their keys: equal
    /// lists give equal text. Numbers are written in the form of the classic locale, whatever the
    /// global one is; floating-point numbers have six significant digits.
    virtual void OutputAsXMLFragment(UTF8String& ioText) const;

    /// Appends the keys in the order of their bytes. Those within nested lists are not among them.
    virtual void GetPropertyNames(std::list<UTF8String>& ioNames) const;

    /// `kPropertyType_None` if there is no such property.
    [[nodiscard]] virtual PropListPropertyType GetPropertyType(UTF8String const& inKey) const;
    template <typename Key, typename = impl::IfStandardKey<Key>>
    [[nodiscard]] PropListPropertyType GetPropertyType(Key const& inKey) const {
        return GetPropertyType(impl::KeyOf(inKey));
    }

    /// The version of the document that the list was read from; the current one if it was not read.
    [[nodiscard]] std::uint16_t GetVersion() const noexcept { return mVersion; }
    /// The version that `SavePropList` writes.
    [[nodiscard]] static std::uint16_t GetCurrentVersion() noexcept { return 4; }

    /// True if there is no property; the version does not count.
    [[nodiscard]] bool IsEmpty() const noexcept { return mNodes.empty(); }

    /// Returns false if there is no such property.
    bool RemoveValue(UTF8String const& inKey);
    template <typename Key, typename = impl::IfStandardKey<Key>>
    bool RemoveValue(Key const& inKey) {
        return RemoveValue(impl::KeyOf(inKey));
    }

private:
    friend struct impl::PropListAccess;

    void DeleteNodes() noexcept;

    impl::PropNodeBlocks mNodes;              // sorted by the bytes of their keys
    std::unique_ptr<UTF16String> mUnreadFile; // which the list must not replace
    std::uint16_t mVersion = GetCurrentVersion();
};

/// True if both have the same keys, with values of the same types that are equal; a NaN equals a
/// NaN here. The versions of the documents that the lists were read from do not count.
[[nodiscard]] BRN_API bool operator==(PropList const& inLHS, PropList const& inRHS);
[[nodiscard]] inline bool operator!=(PropList const& inLHS, PropList const& inRHS) {
    return !(inLHS == inRHS);
}

} // namespace brindle::proplist

// What `Get`, `Set` and `begin` need. They include nothing that is not included here.
#include <brindle/proplist/PropListEntry.h>
#include <brindle/proplist/Values.h>
