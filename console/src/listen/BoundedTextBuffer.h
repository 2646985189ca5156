#pragma once

#include <brindle/utility/TextTypes.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <streambuf>

namespace brindle::console {

/// Collects what is written to a stream, up to a limit. What is beyond it is dropped, but counts as
/// written: a command that writes too much runs to its end.
class BoundedTextBuffer : public std::basic_streambuf<std::uint16_t> {
public:
    explicit BoundedTextBuffer(std::size_t inMostUnits) noexcept : mMostUnits(inMostUnits) {}

    UTF16String const& Text() const noexcept { return mText; }
    bool IsCut() const noexcept { return mIsCut; }

protected:
    int_type overflow(int_type inUnit) override {
        if (!traits_type::eq_int_type(inUnit, traits_type::eof())) {
            auto const unit = traits_type::to_char_type(inUnit);
            xsputn(&unit, 1);
        }
        return traits_type::not_eof(inUnit);
    }
    std::streamsize xsputn(std::uint16_t const* inUnits, std::streamsize inCount) override {
        auto const count = static_cast<std::size_t>(inCount);
        auto const kept = std::min(count, mMostUnits - mText.size());
        mText.append(inUnits, kept);
        mIsCut |= kept < count;
        return inCount;
    }

private:
    std::size_t const mMostUnits;
    UTF16String mText;
    bool mIsCut = false;
};

} // namespace brindle::console
