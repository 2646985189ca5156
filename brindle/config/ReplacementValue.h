#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextConversions.h>
#include <brindle/utility/TextTypes.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace brindle::config {

namespace impl {

template <typename T, typename = void>
inline constexpr bool kHasReplacementText = false;
template <typename T>
inline constexpr bool
    kHasReplacementText<T, std::void_t<decltype(ReplacementText(std::declval<T const&>()))>> = true;

/// A value of any type as one that a constructor of `ReplacementValue` takes.
template <typename T>
auto Replacement(T const& inValue) {
    if constexpr (std::is_floating_point_v<T>) {
        return static_cast<double>(inValue);
    } else if constexpr (std::is_integral_v<T> ||
                         (std::is_enum_v<T> && std::is_convertible_v<T, long long>)) {
        return +inValue;
    } else if constexpr (kHasReplacementText<T>) {
        return UTF16String(ReplacementText(inValue));
    } else if constexpr (std::is_convertible_v<T const&, char const*>) {
        char const* const text = inValue;
        return text == nullptr ? UTF16String() : utility::Utf16(std::string_view(text));
    } else if constexpr (std::is_convertible_v<T const&, char16_t const*>) {
        char16_t const* const text = inValue;
        return text == nullptr ? UTF16String() : utility::Utf16(std::u16string_view(text));
    } else if constexpr (std::is_convertible_v<T const&, std::string_view>) {
        return utility::Utf16(std::string_view(inValue));
    } else if constexpr (std::is_convertible_v<T const&, std::u16string_view>) {
        return utility::Utf16(std::u16string_view(inValue));
    } else if constexpr (std::is_convertible_v<T const&, UTF16String const&>) {
        return UTF16String(static_cast<UTF16String const&>(inValue));
    } else if constexpr (std::is_convertible_v<T const&, UTF8String const&>) {
        return utility::Utf16(static_cast<UTF8String const&>(inValue));
    } else if constexpr (std::is_convertible_v<T const&, std::string>) { // a path
        return utility::Utf16(static_cast<std::string>(inValue));
    } else {
        static_assert(kHasReplacementText<T>,
                      "A ReplacementValue is a number, a bool, a text, a File or a Dir. For a type "
                      "of your own declare, in its namespace: "
                      "UTF16String ReplacementText(YourType const&);");
        return UTF16String();
    }
}

} // namespace impl

/// The value of a placeholder in a text: a number, a text, or nothing. Only the field of its kind
/// is set; the others are zero or empty.
///
///     Report("$$$/viewer/Copied=Copied ^1 files to '^2'.", count, folder);
///
/// Beside the standard library: an argument of `std::format`, which keeps its value; inside it is
/// as a `std::variant`. It is copied, and not compared.
class BRN_API ReplacementValue {
public:
    /// Which field is set.
    enum Kind : std::int32_t {
        kKind_None = 0,     ///< no value
        kKind_Signed = 1,   ///< `GetSigned`
        kKind_Unsigned = 2, ///< `GetUnsigned`
        kKind_Double = 3,   ///< `GetDouble`
        kKind_Text = 4      ///< `GetText`
    };

    ReplacementValue() = default;
    /// Numbers and a text, of the kind that their type says.
    ReplacementValue(int inValue) : mKind(kKind_Signed), mSigned(inValue) {}
    ReplacementValue(unsigned inValue) : mKind(kKind_Unsigned), mUnsigned(inValue) {}
    ReplacementValue(long inValue) : mKind(kKind_Signed), mSigned(inValue) {}
    ReplacementValue(unsigned long inValue) : mKind(kKind_Unsigned), mUnsigned(inValue) {}
    ReplacementValue(long long inValue) : mKind(kKind_Signed), mSigned(inValue) {}
    ReplacementValue(unsigned long long inValue) : mKind(kKind_Unsigned), mUnsigned(inValue) {}
    ReplacementValue(double inValue) : mKind(kKind_Double), mDouble(inValue) {}
    ReplacementValue(UTF16String const& inValue) : mKind(kKind_Text), mText(inValue) {}
    /// The text "yes" or "no", in the language that the host's localiser has at this moment.
    ReplacementValue(bool inValue);
    /// The text of what the standard library, `UTF8String` and literals hold; `char` texts are
    /// UTF-8, malformed parts become U+FFFD, and a null pointer is an empty text. A
    /// `filesupport::File` or `Dir` is its native path. A type of a client is what
    /// `UTF16String ReplacementText(Type const&)` in its namespace returns. Further number types
    /// and unscoped enumerations are numbers. No other type compiles.
    template <typename T>
    ReplacementValue(T const& inValue) : ReplacementValue(impl::Replacement(inValue)) {}
    /// Neither a character, which would be a number, nor null.
    ReplacementValue(char) = delete;
    ReplacementValue(wchar_t) = delete;
    ReplacementValue(char16_t) = delete;
    ReplacementValue(char32_t) = delete;
    ReplacementValue(std::nullptr_t) = delete;

    /// Zeroes the three numbers and leaves the kind and the text as they are.
    void Init() noexcept {
        mUnsigned = 0;
        mSigned = 0;
        mDouble = 0.0;
    }

    /// Which of the getters has the value.
    Kind GetKind() const noexcept { return mKind; }
    ///@{
    /// The value if it is of this kind; otherwise 0 or empty.
    std::uint64_t GetUnsigned() const noexcept { return mUnsigned; }
    std::int64_t GetSigned() const noexcept { return mSigned; }
    double GetDouble() const noexcept { return mDouble; }
    UTF16String const& GetText() const noexcept { return mText; }
    ///@}

private:
    Kind mKind = kKind_None;
    std::uint64_t mUnsigned = 0;
    std::int64_t mSigned = 0;
    double mDouble = 0.0;
    UTF16String mText;
};

} // namespace brindle::config
