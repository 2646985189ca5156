#include "utility/src/unicode/UnicodeConversion.h"

#include <brindle/utility/Unicode.h>

#include <algorithm>

namespace brindle::utility::impl {
namespace {

// Long text is converted chunk by chunk through a buffer on the stack, which stays in the
// first-level cache. Converting into the string itself would need a string that is filled with
// zeros first.
constexpr std::size_t kChunk = 2048;

// A text of one to three units keeps its length even if it contains a NUL.
constexpr std::size_t kFixedLengthUnits = 3;

UTF8String EncodeChunks(UnicodeKernels const& inKernels, std::uint16_t const* inText,
                        UTF16Extent inExtent) {
    UTF8String result;
    result.reserve(inExtent.bytes);
    std::uint8_t buffer[3 * kChunk + UnicodeKernels::kSlack];
    for (std::size_t done = 0; done < inExtent.units;) {
        std::size_t count = std::min(inExtent.units - done, kChunk);
        std::uint16_t const* const chunk = inText + done;
        // A surrogate pair across the border belongs to the next chunk.
        if (count < inExtent.units - done &&
            UnicodeSurrogate(chunk[count - 1]) == kSurrogate_High) {
            --count;
        }
        result.append(buffer, inKernels.EncodeUTF8(chunk, count, buffer));
        done += count;
    }
    return result;
}

/// `ioText` is empty, but may have storage.
void DecodeChunks(UnicodeKernels const& inKernels, std::uint8_t const* inText, std::size_t inCount,
                  UTF16String& ioText) {
    ioText.reserve(inKernels.CountUTF16(inText, inCount));
    if (AppendWith(inKernels, inText, inCount, ioText) < inCount) {
        ioText.shrink_to_fit();
    }
}

} // namespace

UTF8String EncodeWith(UnicodeKernels const& inKernels, std::uint16_t const* inText,
                      std::size_t inCount) {
    UTF16Extent const extent = inKernels.MeasureUTF16(inText, inCount);
    if (extent.units > kChunk) {
        return EncodeChunks(inKernels, inText, extent);
    }

    std::uint8_t buffer[3 * kChunk + UnicodeKernels::kSlack];
    std::size_t bytes = inKernels.EncodeUTF8(inText, extent.units, buffer);
    if (inCount <= kFixedLengthUnits) {
        std::fill_n(buffer + bytes, inCount - extent.units, std::uint8_t{0});
        bytes += inCount - extent.units;
    }
    return UTF8String(buffer, bytes);
}

UTF16String DecodeWith(UnicodeKernels const& inKernels, std::uint8_t const* inText,
                       std::size_t inCount) {
    if (inCount > kChunk) {
        UTF16String result;
        DecodeChunks(inKernels, inText, inCount, result);
        return result;
    }
    std::uint16_t buffer[kChunk + UnicodeKernels::kSlack];
    return UTF16String(buffer, inKernels.DecodeUTF8(inText, inCount, buffer).produced);
}

std::size_t AppendWith(UnicodeKernels const& inKernels, std::uint8_t const* inText,
                       std::size_t inCount, UTF16String& ioText) {
    std::uint16_t buffer[kChunk + UnicodeKernels::kSlack];
    std::size_t done = 0;
    while (done < inCount) {
        // The end of a chunk may cut a sequence, which is then the start of the next chunk. If
        // nothing was consumed, the sequence is malformed or incomplete.
        UnicodeProgress const progress =
            inKernels.DecodeUTF8(inText + done, std::min(inCount - done, kChunk), buffer);
        ioText.append(buffer, progress.produced);
        done += progress.consumed;
        if (progress.consumed == 0) {
            break;
        }
    }
    return done;
}

void AssignWith(UnicodeKernels const& inKernels, std::uint8_t const* inText, std::size_t inCount,
                UTF16String& outText) {
    if (inCount > kChunk) {
        outText.clear();
        DecodeChunks(inKernels, inText, inCount, outText);
        return;
    }
    std::uint16_t buffer[kChunk + UnicodeKernels::kSlack];
    outText.assign(buffer, inKernels.DecodeUTF8(inText, inCount, buffer).produced);
}

} // namespace brindle::utility::impl
