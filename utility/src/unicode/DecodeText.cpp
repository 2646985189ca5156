#include <brindle/utility/DecodeText.h>

#include "utility/src/unicode/WholeText.h"

#include <algorithm>

namespace brindle::utility {

namespace {

struct Bytes {
    std::uint8_t const* data;
    std::size_t count;

    bool Skip(std::initializer_list<std::uint8_t> inMark) noexcept {
        bool const isThere =
            count >= inMark.size() && std::equal(inMark.begin(), inMark.end(), data);
        if (isThere) {
            data += inMark.size();
            count -= inMark.size();
        }
        return isThere;
    }
};

bool SkipByteOrderMark(Bytes& ioBytes, TextEncoding& outEncoding) noexcept {
    if (ioBytes.Skip({0xEF, 0xBB, 0xBF})) {
        outEncoding = TextEncoding::kUTF8;
    } else if (ioBytes.Skip({0xFF, 0xFE})) {
        outEncoding = TextEncoding::kUTF16LittleEndian;
    } else if (ioBytes.Skip({0xFE, 0xFF})) {
        outEncoding = TextEncoding::kUTF16BigEndian;
    } else {
        return false;
    }
    return true;
}

/// By where the zero bytes of ASCII are, at the start of the text.
TextEncoding GuessEncoding(Bytes inBytes) noexcept {
    constexpr std::size_t kMostBytes = 4096;
    auto const pairs = std::min(inBytes.count, kMostBytes) / 2;
    std::size_t zeros[2] = {0, 0}; // of the first and of the second bytes
    for (std::size_t i = 0; i < 2 * pairs; ++i) {
        zeros[i % 2] += inBytes.data[i] == 0 ? 1 : 0;
    }
    if (zeros[0] == 0 && zeros[1] > pairs / 2) {
        return TextEncoding::kUTF16LittleEndian;
    }
    if (zeros[1] == 0 && zeros[0] > pairs / 2) {
        return TextEncoding::kUTF16BigEndian;
    }
    return TextEncoding::kUTF8;
}

UTF16String DecodeUTF16(Bytes inBytes, bool inIsBigEndian, Replacements& outReplacements) {
    UTF16String text(inBytes.count / 2, 0);
    for (std::size_t i = 0; i < text.size(); ++i) {
        auto const first = inBytes.data[2 * i], second = inBytes.data[2 * i + 1];
        text[i] =
            static_cast<std::uint16_t>(inIsBigEndian ? first << 8 | second : second << 8 | first);
    }
    if (inBytes.count % 2 != 0) {
        text += std::uint16_t{0xD800}; // half a unit, replaced below
    }
    ReplaceLoneSurrogates(text, outReplacements);
    return text;
}

} // namespace

UTF16String DecodeText(void const* inBytes, std::size_t inCount, TextReport* outReport,
                       TextEncoding inFallback) {
    Bytes bytes{static_cast<std::uint8_t const*>(inBytes), inCount};
    TextReport report;
    report.hasByteOrderMark = SkipByteOrderMark(bytes, report.encoding);
    if (!report.hasByteOrderMark) {
        report.encoding = GuessEncoding(bytes);
    }
    Replacements replacements;
    UTF16String text;
    if (report.encoding == TextEncoding::kUTF8) {
        text = DecodeWholeUTF8(bytes.data, bytes.count, replacements);
        bool const isLatin1 = replacements.count > 0 && !report.hasByteOrderMark &&
                              inFallback == TextEncoding::kLatin1;
        if (isLatin1) {
            report.encoding = TextEncoding::kLatin1;
            text.assign(bytes.data, bytes.data + bytes.count);
            replacements = {};
        }
    } else {
        text = DecodeUTF16(bytes, report.encoding == TextEncoding::kUTF16BigEndian, replacements);
    }
    report.replacedCount = replacements.count;
    report.firstReplaced = replacements.first;
    if (outReport != nullptr) {
        *outReport = report;
    }
    return text;
}

} // namespace brindle::utility
