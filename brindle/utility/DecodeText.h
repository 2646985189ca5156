#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

#include <cstddef>
#include <cstdint>

namespace brindle::utility {

/// The encodings that `DecodeText` reads.
enum class TextEncoding : std::uint8_t {
    kUTF8,              ///< also ASCII
    kUTF16LittleEndian, ///< the low byte of a unit first
    kUTF16BigEndian,    ///< the high byte of a unit first
    kLatin1             ///< each byte is the code point of its value; only as a fall-back
};

/// What `DecodeText` found.
struct TextReport {
    TextEncoding encoding = TextEncoding::kUTF8; ///< in which the text was decoded
    /// True if a mark at the beginning told the encoding; it is not in the text.
    bool hasByteOrderMark = false;
    std::size_t replacedCount = 0; ///< how many U+FFFD stand for something malformed
    std::size_t firstReplaced = 0; ///< where the first of them is, in units of the result
};

/// Compares all fields.
constexpr bool operator==(TextReport const& inLHS, TextReport const& inRHS) noexcept {
    return inLHS.encoding == inRHS.encoding && inLHS.hasByteOrderMark == inRHS.hasByteOrderMark &&
           inLHS.replacedCount == inRHS.replacedCount && inLHS.firstReplaced == inRHS.firstReplaced;
}

constexpr bool operator!=(TextReport const& inLHS, TextReport const& inRHS) noexcept {
    return !(inLHS == inRHS);
}

/// The text of a file whose encoding nobody has written down:
///
///     utility::TextReport report;
///     UTF16String const text = utility::DecodeText(bytes.data(), bytes.size(), &report);
///     if (report.replacedCount > 0) { ... }
///
/// A byte order mark, which is not part of the result, decides the encoding. Without one, bytes are
/// UTF-16 if most units of one byte order, and none of the other, are ASCII; everything else is
/// UTF-8. Bytes that are not well-formed UTF-8 are decoded anew as `inFallback`, if that is
/// Latin-1; otherwise each malformed part becomes U+FFFD.
///
/// `inBytes` may be null if `inCount` is 0. Any thread may call, and only the allocator can throw.
[[nodiscard]] BRN_API UTF16String DecodeText(void const* inBytes, std::size_t inCount,
                                             TextReport* outReport = nullptr,
                                             TextEncoding inFallback = TextEncoding::kUTF8);

} // namespace brindle::utility
