#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

#include <cstddef>
#include <cstdint>

namespace brindle::config {

/// The value of a placeholder in an error's text: a number, a text, or nothing. Only the field of
/// its kind is set; the others are zero or empty.
class BRN_API ReplacementValue {
public:
    enum Kind : std::int32_t {
        kKind_None = 0,
        kKind_Signed = 1,
        kKind_Unsigned = 2,
        kKind_Double = 3,
        kKind_Text = 4
    };

    ReplacementValue() = default;
    ReplacementValue(int inValue) : mKind(kKind_Signed), mSigned(inValue) {}
    ReplacementValue(unsigned inValue) : mKind(kKind_Unsigned), mUnsigned(inValue) {}
    ReplacementValue(long inValue) : mKind(kKind_Signed), mSigned(inValue) {}
    ReplacementValue(unsigned long inValue) : mKind(kKind_Unsigned), mUnsigned(inValue) {}
    ReplacementValue(long long inValue) : mKind(kKind_Signed), mSigned(inValue) {}
    ReplacementValue(unsigned long long inValue) : mKind(kKind_Unsigned), mUnsigned(inValue) {}
    ReplacementValue(double inValue) : mKind(kKind_Double), mDouble(inValue) {}
    ReplacementValue(UTF16String const& inValue) : mKind(kKind_Text), mText(inValue) {}
    /// A text is a `UTF16String`: neither a character, which would be a number, nor null.
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

    Kind GetKind() const noexcept { return mKind; }
    std::uint64_t GetUnsigned() const noexcept { return mUnsigned; }
    std::int64_t GetSigned() const noexcept { return mSigned; }
    double GetDouble() const noexcept { return mDouble; }
    UTF16String const& GetText() const noexcept { return mText; }

private:
    Kind mKind = kKind_None;
    std::uint64_t mUnsigned = 0;
    std::int64_t mSigned = 0;
    double mDouble = 0.0;
    UTF16String mText;
};

} // namespace brindle::config
