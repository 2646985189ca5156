#include "utility/src/unicode/UnicodeKernels.h"

#include <brindle/utility/UTF8Sequence.h>

#include <brindle/utility/Unicode.h>

#include <cstring>

namespace brindle::utility::impl {
namespace {

constexpr std::size_t kBlock = 8;
constexpr std::size_t kMeasuredBlock = 32;

template <typename Element>
bool IsASCIIBlock(Element const* inText) noexcept {
    constexpr std::uint64_t kNotASCII =
        sizeof(Element) == 1 ? 0x8080808080808080 : 0xFF80FF80FF80FF80;
    std::uint64_t words[kBlock * sizeof(Element) / 8];
    std::memcpy(words, inText, sizeof words);
    std::uint64_t seen = 0;
    for (std::uint64_t word : words) {
        seen |= word;
    }
    return (seen & kNotASCII) == 0;
}

template <typename From, typename To>
void CopyASCIIBlock(From const* inText, To* outText) noexcept {
    for (std::size_t i = 0; i < kBlock; ++i) {
        outText[i] = static_cast<To>(inText[i]);
    }
}

bool IsPair(std::uint16_t inFirst, std::uint16_t inSecond) noexcept {
    // A sum instead of &&, which would be a branch.
    return ((inFirst & 0xFC00) ^ 0xD800) + ((inSecond & 0xFC00) ^ 0xDC00) == 0;
}

int ExtraBytes(std::uint16_t inUnit) noexcept {
    return (inUnit >= 0x80) + (inUnit >= 0x800);
}

/// Adds the encoded size of a block to `ioBytes` and returns true, or returns false if the block
/// contains a NUL. There is at least one unit before the block.
bool MeasureBlock(std::uint16_t const* inBlock, std::size_t& ioBytes) noexcept {
    // Subtracting 1 makes NUL 0xFFFF, which has bits that ASCII does not have.
    unsigned seen = 0;
    for (std::size_t i = 0; i < kMeasuredBlock; ++i) {
        seen |= inBlock[i] | static_cast<std::uint16_t>(inBlock[i] - 1);
    }
    if ((seen & 0xFF80) == 0) {
        ioBytes += kMeasuredBlock;
        return true;
    }
    std::uint16_t const* const before = inBlock - 1;
    // Sums of the width of a unit, so that a vector register holds as many of them as of units.
    std::uint16_t extra = 0;
    std::uint16_t nuls = 0;
    std::uint16_t pairs = 0;
    for (std::size_t i = 0; i < kMeasuredBlock; ++i) {
        extra = static_cast<std::uint16_t>(extra + ExtraBytes(inBlock[i]));
        nuls = static_cast<std::uint16_t>(nuls + (inBlock[i] == 0));
        pairs = static_cast<std::uint16_t>(pairs + IsPair(before[i], inBlock[i]));
    }
    if (nuls != 0) {
        return false;
    }
    // Two surrogates by themselves take six bytes, and a pair takes four.
    ioBytes += kMeasuredBlock + extra - 2 * std::size_t{pairs};
    return true;
}

UTF16Extent MeasureUTF16(std::uint16_t const* inText, std::size_t inCount) noexcept {
    if (inCount == 0 || inText[0] == 0) {
        return {0, 0};
    }
    std::size_t units = 1;
    std::size_t bytes = 1 + static_cast<std::size_t>(ExtraBytes(inText[0]));
    while (inCount - units >= kMeasuredBlock && MeasureBlock(inText + units, bytes)) {
        units += kMeasuredBlock;
    }
    for (; units < inCount && inText[units] != 0; ++units) {
        bytes += 1 + static_cast<std::size_t>(ExtraBytes(inText[units])) -
                 2 * std::size_t{IsPair(inText[units - 1], inText[units])};
    }
    return {units, bytes};
}

/// Encodes the unit or the surrogate pair at `ioText` and advances both pointers.
void EncodeOne(std::uint16_t const*& ioText, std::uint16_t const* inEnd,
               std::uint8_t*& ioBytes) noexcept {
    std::uint16_t const unit = *ioText++;
    if (unit < 0x80) {
        *ioBytes++ = static_cast<std::uint8_t>(unit);
    } else if (UnicodeSurrogate(unit) == kSurrogate_High && ioText != inEnd &&
               UnicodeSurrogate(*ioText) == kSurrogate_Low) {
        ioBytes = EncodeUTF8Sequence(JoinSurrogates(unit, *ioText++), ioBytes);
    } else {
        ioBytes = EncodeUTF8Sequence(unit, ioBytes);
    }
}

std::size_t EncodeUTF8(std::uint16_t const* inText, std::size_t inCount,
                       std::uint8_t* outBytes) noexcept {
    std::uint16_t const* text = inText;
    std::uint16_t const* const end = inText + inCount;
    std::uint8_t* bytes = outBytes;
    while (static_cast<std::size_t>(end - text) >= kBlock) {
        if (IsASCIIBlock(text)) {
            CopyASCIIBlock(text, bytes);
            text += kBlock;
            bytes += kBlock;
            continue;
        }
        std::uint16_t const* const blockEnd = text + kBlock;
        while (text < blockEnd) {
            EncodeOne(text, end, bytes);
        }
    }
    while (text != end) {
        EncodeOne(text, end, bytes);
    }
    return static_cast<std::size_t>(bytes - outBytes);
}

std::size_t CountUTF16(std::uint8_t const* inText, std::size_t inCount) noexcept {
    std::size_t units = 0;
    for (std::size_t i = 0; i < inCount; ++i) {
        units += std::size_t{(inText[i] & 0xC0) != 0x80} + std::size_t{inText[i] >= 0xF0};
    }
    return units;
}

/// Decodes the sequence at `ioText` and advances both pointers. Returns false and advances neither
/// if the sequence is malformed or incomplete.
bool DecodeOne(std::uint8_t const*& ioText, std::uint8_t const* inEnd,
               std::uint16_t*& ioUnits) noexcept {
    UTF8Sequence const sequence =
        DecodeUTF8Sequence(ioText, static_cast<std::size_t>(inEnd - ioText));
    if (sequence.value < 0x10000) {
        *ioUnits = static_cast<std::uint16_t>(sequence.value);
        ioUnits += sequence.length != 0;
    } else {
        *ioUnits++ = HighSurrogate(sequence.value);
        *ioUnits++ = LowSurrogate(sequence.value);
    }
    ioText += sequence.length;
    return sequence.length != 0;
}

UnicodeProgress DecodeUTF8(std::uint8_t const* inText, std::size_t inCount,
                           std::uint16_t* outUnits) noexcept {
    std::uint8_t const* text = inText;
    std::uint8_t const* const end = inText + inCount;
    std::uint16_t* units = outUnits;
    bool isWellFormed = true;
    while (isWellFormed && static_cast<std::size_t>(end - text) >= kBlock) {
        if (IsASCIIBlock(text)) {
            CopyASCIIBlock(text, units);
            text += kBlock;
            units += kBlock;
            continue;
        }
        std::uint8_t const* const blockEnd = text + kBlock;
        while (isWellFormed && text < blockEnd) {
            isWellFormed = DecodeOne(text, end, units);
        }
    }
    while (isWellFormed && text != end) {
        isWellFormed = DecodeOne(text, end, units);
    }
    return {static_cast<std::size_t>(text - inText), static_cast<std::size_t>(units - outUnits)};
}

} // namespace

constexpr UnicodeKernels kPortableUnicodeKernels = {"portable", MeasureUTF16, EncodeUTF8,
                                                    CountUTF16, DecodeUTF8};

} // namespace brindle::utility::impl
