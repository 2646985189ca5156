#include <brindle/utility/StringUtils.h>

#include <algorithm>
#include <cstddef>

namespace brindle::utility {

namespace {

/// The mapping of a unit that becomes more than one unit.
struct Expansion {
    std::uint8_t length;
    std::uint16_t units[3];
};

#include "utility/src/text/CaseTable.inc"

/// One of the three mappings, as a two-stage table. `blocks` gives the block of a unit, and the
/// block gives for each of its units the difference to the mapped unit, modulo 2^16, or
/// `kFirstExpansion` plus the index of an expansion. The blocks of the first `kDirectCount` units
/// come first and in order, so that such a unit is itself the index of its difference.
struct CaseMapping {
    std::uint8_t const* blocks;
    std::uint16_t const* differences;
    Expansion const* expansions;
    std::uint16_t firstAsciiLetter; ///< the first of the 26 ASCII letters that change

    std::uint16_t DifferenceOf(std::uint16_t inUnit) const noexcept {
        return differences[blocks[inUnit / kBlockSize] * kBlockSize + inUnit % kBlockSize];
    }
};

constexpr CaseMapping kLower{kLowerBlocks, kLowerDifferences, nullptr, 'A'};
constexpr CaseMapping kUpper{kUpperBlocks, kUpperDifferences, kUpperExpansions, 'a'};
constexpr CaseMapping kFold{kFoldBlocks, kFoldDifferences, kFoldExpansions, 'A'};

/// A range of units without case: ideographs, Hangul, surrogates.
constexpr std::uint16_t kFirstCaseless = 0x2500;
constexpr std::uint16_t kCaselessCount = 0xFB00 - kFirstCaseless;

/// Long enough for vector instructions to pay off, and short enough for mixed text to have chunks
/// of one kind.
constexpr std::size_t kChunk = 32;

/// Short enough that a punctuation mark from U+2000 on slows down only a few letters around it.
constexpr std::size_t kGroup = 8;
static_assert(kChunk % kGroup == 0 && (kDirectCount & (kDirectCount - 1)) == 0);

constexpr bool IsExpansion(std::uint16_t inDifference) noexcept {
    return static_cast<std::uint16_t>(inDifference - kFirstExpansion) < kExpansionCount;
}

constexpr std::uint16_t Sum(std::uint16_t inUnit, std::uint16_t inDifference) noexcept {
    return static_cast<std::uint16_t>(inUnit + inDifference);
}

bool IsAscii(std::uint16_t const* inUnits) noexcept {
    unsigned all = 0;
    for (std::size_t i = 0; i < kChunk; ++i) {
        all |= inUnits[i];
    }
    return all < 0x80;
}

bool IsCaseless(std::uint16_t const* inUnits) noexcept {
    std::uint16_t cased = 0;
    for (std::size_t i = 0; i < kChunk; ++i) {
        cased |= Sum(inUnits[i], std::uint16_t(-kFirstCaseless)) >= kCaselessCount;
    }
    return cased == 0;
}

void MapAscii(CaseMapping const& inMapping, std::uint16_t* ioUnits) noexcept {
    std::uint16_t const first = inMapping.firstAsciiLetter;
    for (std::size_t i = 0; i < kChunk; ++i) {
        bool const changes = static_cast<std::uint16_t>(ioUnits[i] - first) < 26;
        ioUnits[i] = static_cast<std::uint16_t>(ioUnits[i] ^ (changes ? 0x20 : 0));
    }
}

/// Looks up the differences of `kGroup` units.
void FindDifferences(CaseMapping const& inMapping, std::uint16_t const* inUnits,
                     std::uint16_t* outDifferences) noexcept {
    unsigned all = 0;
    for (std::size_t i = 0; i < kGroup; ++i) {
        all |= inUnits[i];
    }
    if (all < kDirectCount) {
        for (std::size_t i = 0; i < kGroup; ++i) {
            outDifferences[i] = inMapping.differences[inUnits[i]];
        }
    } else {
        for (std::size_t i = 0; i < kGroup; ++i) {
            outDifferences[i] = inMapping.DifferenceOf(inUnits[i]);
        }
    }
}

/// Maps a chunk in place and returns true, or returns false and changes nothing if a unit expands.
bool MapChunk(CaseMapping const& inMapping, std::uint16_t* ioUnits) noexcept {
    // The look-ups are separate so that the compiler can vectorise the other loops.
    std::uint16_t differences[kChunk];
    for (std::size_t i = 0; i < kChunk; i += kGroup) {
        FindDifferences(inMapping, ioUnits + i, differences + i);
    }
    std::uint16_t expands = 0;
    for (std::size_t i = 0; i < kChunk; ++i) {
        expands |= IsExpansion(differences[i]);
    }
    if (expands != 0) {
        return false;
    }
    for (std::size_t i = 0; i < kChunk; ++i) {
        ioUnits[i] = Sum(ioUnits[i], differences[i]);
    }
    return true;
}

/// Maps in place up to the first unit that expands. Returns the index of that unit, or the length.
std::size_t MapSingles(CaseMapping const& inMapping, UTF16String& ioText) noexcept {
    std::uint16_t* const units = ioText.data();
    std::size_t const count = ioText.size();
    std::size_t at = 0;
    for (; count - at >= kChunk; at += kChunk) {
        if (IsAscii(units + at)) {
            MapAscii(inMapping, units + at);
        } else if (!IsCaseless(units + at) && !MapChunk(inMapping, units + at)) {
            break;
        }
    }
    for (; at < count; ++at) {
        std::uint16_t const difference = inMapping.DifferenceOf(units[at]);
        if (IsExpansion(difference)) {
            break;
        }
        units[at] = Sum(units[at], difference);
    }
    return at;
}

/// Maps the units from `inFrom` on into a new string of exactly the length that is needed.
void MapExpanding(CaseMapping const& inMapping, UTF16String& ioText, std::size_t inFrom) {
    std::size_t length = ioText.size();
    for (std::size_t at = inFrom; at < ioText.size(); ++at) {
        std::uint16_t const difference = inMapping.DifferenceOf(ioText[at]);
        if (IsExpansion(difference)) {
            length += inMapping.expansions[difference - kFirstExpansion].length - 1u;
        }
    }

    UTF16String result(length, 0);
    std::uint16_t* out = std::copy_n(ioText.data(), inFrom, result.data());
    for (std::size_t at = inFrom; at < ioText.size(); ++at) {
        std::uint16_t const difference = inMapping.DifferenceOf(ioText[at]);
        if (IsExpansion(difference)) {
            Expansion const& expansion = inMapping.expansions[difference - kFirstExpansion];
            out = std::copy_n(expansion.units, expansion.length, out);
        } else {
            *out++ = Sum(ioText[at], difference);
        }
    }
    ioText.swap(result);
}

void Convert(CaseMapping const& inMapping, UTF16String& ioText) {
    std::size_t const expanding = MapSingles(inMapping, ioText);
    if (expanding < ioText.size()) {
        MapExpanding(inMapping, ioText, expanding);
    }
}

UTF16String Converted(CaseMapping const& inMapping, UTF16String const& inText) {
    UTF16String result = inText;
    Convert(inMapping, result);
    return result;
}

} // namespace

UTF16String FoldCase(UTF16String const& inText) {
    return Converted(kFold, inText);
}

UTF16String UpperCase(UTF16String const& inText) {
    return Converted(kUpper, inText);
}

UTF16String LowerCase(UTF16String const& inText) {
    return Converted(kLower, inText);
}

void ToFoldCase(UTF16String& ioText) {
    Convert(kFold, ioText);
}

void ToUpperCase(UTF16String& ioText) {
    Convert(kUpper, ioText);
}

void ToLowerCase(UTF16String& ioText) {
    Convert(kLower, ioText);
}

} // namespace brindle::utility
