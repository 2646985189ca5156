#include "utility/src/unicode/WholeText.h"

#include "utility/src/unicode/UnicodeAssign.h"

#include <brindle/utility/UTF8Sequence.h>
#include <brindle/utility/Unicode.h>

#include <algorithm>
#include <cstring>

namespace brindle::utility {

namespace {

constexpr std::uint16_t kReplacement = 0xFFFD;

bool IsTrailing(std::uint8_t inByte) noexcept {
    return (inByte & 0xC0) == 0x80;
}

/// Whether the three-byte form of a surrogate stands here.
bool IsSurrogate(std::uint8_t const* inText, std::uint8_t const* inEnd) noexcept {
    return inEnd - inText >= 2 && inText[0] == 0xED && inText[1] >= 0xA0 && IsTrailing(inText[1]);
}

/// The end of a piece that can be decoded in one go, because no surrogate is in it.
std::uint8_t const* EndOfPiece(std::uint8_t const* inText, std::uint8_t const* inEnd) noexcept {
    constexpr std::ptrdiff_t kMostBytes = 4096;
    auto const* const end = inText + std::min(inEnd - inText, kMostBytes);
    auto const* at = inText;
    while (at != end) {
        at = static_cast<std::uint8_t const*>(
            std::memchr(at, 0xED, static_cast<std::size_t>(end - at)));
        if (at == nullptr) {
            return end;
        }
        if (IsSurrogate(at, inEnd)) {
            return at;
        }
        ++at;
    }
    return end;
}

/// How many bytes of a malformed sequence could have begun a well-formed one; at least one.
std::size_t MaximalPart(std::uint8_t const* inText, std::uint8_t const* inEnd) noexcept {
    auto const available = static_cast<std::size_t>(inEnd - inText);
    std::uint8_t const lead = inText[0];
    std::size_t const length = lead < 0xC2 || lead > 0xF4 ? 1
                               : lead < 0xE0              ? 2
                               : lead < 0xF0              ? 3
                                                          : 4;
    if (length > 2 && available > 1) {
        // What the second byte may be depends on the first.
        std::uint8_t const least = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
        std::uint8_t const most = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
        if (inText[1] < least || inText[1] > most) {
            return 1;
        }
    }
    std::size_t part = 1;
    while (part < length && part < available && IsTrailing(inText[part])) {
        ++part;
    }
    return part;
}

void NoteReplacement(Replacements& ioReplacements, std::size_t inAt) noexcept {
    if (ioReplacements.count++ == 0) {
        ioReplacements.first = inAt;
    }
}

/// Decodes one sequence, or replaces the part of one. Returns the number of bytes.
std::size_t DecodeOne(std::uint8_t const* inText, std::uint8_t const* inEnd, UTF16String& ioText,
                      Replacements& ioReplacements) {
    auto const sequence = DecodeUTF8Sequence(inText, static_cast<std::size_t>(inEnd - inText));
    if (sequence.length == 0 || IsSurrogate(inText, inEnd)) {
        NoteReplacement(ioReplacements, ioText.size());
        ioText += kReplacement;
        return MaximalPart(inText, inEnd);
    }
    if (sequence.value < 0x10000) {
        ioText += static_cast<std::uint16_t>(sequence.value);
    } else {
        ioText += HighSurrogate(sequence.value);
        ioText += LowSurrogate(sequence.value);
    }
    return sequence.length;
}

/// Where the first surrogate without its partner is, from `inFrom` on; the size if there is none.
std::size_t FindLoneSurrogate(UTF16String const& inText, std::size_t inFrom) noexcept {
    auto const kindAt = [&inText](std::size_t inIndex) {
        return inIndex < inText.size() ? UnicodeSurrogate(inText[inIndex]) : kSurrogate_None;
    };
    for (std::size_t i = inFrom; i < inText.size(); ++i) {
        auto const kind = kindAt(i);
        if (kind == kSurrogate_High && kindAt(i + 1) == kSurrogate_Low) {
            ++i;
        } else if (kind != kSurrogate_None) {
            return i;
        }
    }
    return inText.size();
}

} // namespace

UTF16String DecodeWholeUTF8(std::uint8_t const* inText, std::size_t inCount,
                            Replacements& outReplacements) {
    // Behind something malformed there is often more, so the next sequences are decoded one by one.
    constexpr int kSequencesBehindAStop = 32;
    outReplacements = {};
    UTF16String text;
    auto const* at = inText;
    auto const* const end = inText + inCount;
    while (at != end) {
        auto const* const stop = EndOfPiece(at, end);
        auto const size = static_cast<std::size_t>(stop - at);
        auto const decoded = impl::AppendUTF8to16(at, size, text);
        at += decoded;
        bool const isStopped = decoded < size || size == 0;
        for (int i = 0; isStopped && at != end && i < kSequencesBehindAStop; ++i) {
            at += DecodeOne(at, end, text, outReplacements);
        }
    }
    return text;
}

void ReplaceLoneSurrogates(UTF16String& ioText, Replacements& outReplacements) {
    outReplacements = {};
    for (auto at = FindLoneSurrogate(ioText, 0); at < ioText.size();
         at = FindLoneSurrogate(ioText, at + 1)) {
        NoteReplacement(outReplacements, at);
        ioText[at] = kReplacement;
    }
}

} // namespace brindle::utility
