#include <brindle/utility/Unicode.h>

#include "utility/src/UnicodeKernels.h"

#include <algorithm>
#include <cstring>

namespace brindle::utility {
namespace {

using impl::UnicodeKernels;

// Text up to here is not worth a call through the kernels' table.
constexpr std::size_t kShortText = 16;

// Long text goes through a buffer on the stack, chunk by chunk: a string can only be sized by
// filling it, and the buffer stays in the nearest cache.
constexpr std::size_t kChunk = 1024;

// Of these, a text of one to three units keeps its length even with a NUL inside.
constexpr std::size_t kFixedLengthUnits = 3;

UnicodeKernels const& Kernels() noexcept {
    static UnicodeKernels const* const S_kernelsP = [] {
        UnicodeKernels const* const kernels = impl::AVX2UnicodeKernels();
        return kernels != nullptr ? kernels : &impl::kPortableUnicodeKernels;
    }();
    return *S_kernelsP;
}

UTF8String EncodeShort(std::uint16_t const* inText, std::size_t inCount) {
    std::uint16_t const* const textEnd = std::find(inText, inText + inCount, std::uint16_t{0});
    auto const units = static_cast<std::size_t>(textEnd - inText);
    std::uint8_t buffer[3 * kShortText + UnicodeKernels::kSlack];
    std::size_t bytes = impl::kPortableUnicodeKernels.EncodeUTF8(inText, units, buffer);
    if (inCount <= kFixedLengthUnits) {
        std::fill_n(buffer + bytes, inCount - units, std::uint8_t{0});
        bytes += inCount - units;
    }
    return UTF8String(buffer, bytes);
}

UTF8String Encode(std::uint16_t const* inText, std::size_t inCount) {
    if (inCount <= kShortText)
        return EncodeShort(inText, inCount);

    UnicodeKernels const& kernels = Kernels();
    impl::UTF16Extent const extent = kernels.MeasureUTF16(inText, inCount);
    UTF8String result;
    result.reserve(extent.bytes);
    std::uint8_t buffer[3 * kChunk + UnicodeKernels::kSlack];
    for (std::size_t done = 0; done < extent.units;) {
        std::size_t count = std::min(extent.units - done, kChunk);
        std::uint16_t const* const chunk = inText + done;
        // A pair across the border goes to the next chunk.
        if (count < extent.units - done && UnicodeSurrogate(chunk[count - 1]) == kSurrogate_High)
            --count;
        result.append(buffer, kernels.EncodeUTF8(chunk, count, buffer));
        done += count;
    }
    return result;
}

UTF16String DecodeShort(std::uint8_t const* inText, std::size_t inCount) {
    std::uint16_t buffer[kShortText + UnicodeKernels::kSlack];
    return UTF16String(buffer,
                       impl::kPortableUnicodeKernels.DecodeUTF8(inText, inCount, buffer).produced);
}

UTF16String Decode(std::uint8_t const* inText, std::size_t inCount) {
    if (inCount <= kShortText)
        return DecodeShort(inText, inCount);

    UnicodeKernels const& kernels = Kernels();
    UTF16String result;
    if (inCount > kChunk)
        result.reserve(kernels.CountUTF16(inText, inCount));
    std::uint16_t buffer[kChunk + UnicodeKernels::kSlack];
    for (std::size_t done = 0; done < inCount;) {
        // A chunk's border may cut a sequence, which the next chunk then starts with. No progress
        // means that the sequence is bad or that the text ends inside it.
        impl::UnicodeProgress const progress =
            kernels.DecodeUTF8(inText + done, std::min(inCount - done, kChunk), buffer);
        if (progress.consumed == 0) {
            result.shrink_to_fit();
            break;
        }
        result.append(buffer, progress.produced);
        done += progress.consumed;
    }
    return result;
}

} // namespace

UTF8String UTF16to8(UTF16String const& inText) {
    return Encode(inText.data(), inText.size());
}

UTF8String UTF16to8(std::uint16_t const* inText) {
    return Encode(inText, std::char_traits<std::uint16_t>::length(inText));
}

UTF16String UTF8to16(UTF8String const& inText) {
    return Decode(inText.data(), inText.size());
}

UTF16String AsciiToUTF16(char const* inText) {
    return Decode(AsciiToUTF8Impl(inText), std::strlen(inText));
}

} // namespace brindle::utility
