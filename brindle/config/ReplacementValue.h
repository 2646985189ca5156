#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

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
    ReplacementValue(std::int64_t inValue) : mKind(kKind_Signed), mSigned(inValue) {}
    ReplacementValue(std::int32_t inValue) : mKind(kKind_Signed), mSigned(inValue) {}
    ReplacementValue(std::uint64_t inValue) : mKind(kKind_Unsigned), mUnsigned(inValue) {}
    ReplacementValue(std::uint32_t inValue) : mKind(kKind_Unsigned), mUnsigned(inValue) {}
    ReplacementValue(double inValue) : mKind(kKind_Double), mDouble(inValue) {}
    ReplacementValue(UTF16String const& inValue) : mKind(kKind_Text), mText(inValue) {}

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
