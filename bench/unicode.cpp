#include "utility/src/unicode/UnicodeConversion.h"

#include <brindle/utility/Unicode.h>

#include <benchmark/benchmark.h>

#include <iconv.h>
#include <unicode/ustring.h>

#include <random>
#include <string>
#include <vector>

// All rates count the bytes of the UTF-16 text, so that the rows of one text are comparable.

namespace {

using brindle::UTF16String;
using brindle::UTF8String;
using brindle::utility::UnicodeSurrogate;
using brindle::utility::UTF16to8;
using brindle::utility::UTF8to16;
using brindle::utility::impl::DecodeWith;
using brindle::utility::impl::EncodeWith;
using brindle::utility::impl::UnicodeKernels;

constexpr std::size_t kLongText = 70000; // units, 140 KB

enum Kind { kASCII, kLatin, kCJK, kMixed };
constexpr char const* kKindNames[] = {"ASCII", "Latin", "CJK", "mixed"};

std::uint16_t const* Words(Kind inKind) {
    switch (inKind) {
    case kASCII:
        return reinterpret_cast<std::uint16_t const*>(
            u"The quick brown fox jumps over the lazy dog, and nobody minds at all. ");
    case kLatin:
        return reinterpret_cast<std::uint16_t const*>(
            u"Les \u00E9l\u00E8ves \u00E9taient tr\u00E8s gais \u00E0 No\u00EBl; die "
            u"sch\u00F6nsten "
            u"B\u00E4ume gr\u00FC\u00DFen fr\u00F6hlich \u00FCber die alte Stra\u00DFe hinweg, "
            u"et le gar\u00E7on r\u00EAve. ");
    case kCJK:
        return reinterpret_cast<std::uint16_t const*>(
            u"\u4EBA\u4EBA\u751F\u800C\u81EA\u7531\uFF0C\u5728\u5C0A\u4E25\u548C\u6743\u5229\u4E0A"
            u"\u4E00\u5F8B\u5E73\u7B49\u3002");
    case kMixed:
        break;
    }
    return reinterpret_cast<std::uint16_t const*>(
        u"Caf\u00E9 \u4E2D\u6587 \U0001F600 plain \u03B1\u03B2\u03B3 \u20AC 5 "
        u"\U0001F680\U0001F30D ");
}

/// A part of a text that does not cut a surrogate pair, which ICU would refuse.
UTF16String Cut(UTF16String const& inText, std::size_t inBegin, std::size_t inCount) {
    UTF16String part = inText.substr(inBegin, inCount);
    if (UnicodeSurrogate(part.front()) == brindle::utility::kSurrogate_Low) {
        part.front() = u'x';
    }
    if (UnicodeSurrogate(part.back()) == brindle::utility::kSurrogate_High) {
        part.back() = u'x';
    }
    return part;
}

/// The words repeated, from a different one on each time, so that branches cannot learn a pattern.
UTF16String Text(Kind inKind, std::size_t inUnits) {
    UTF16String const words = Words(inKind);
    std::mt19937 random(7);
    UTF16String text;
    while (text.size() < inUnits) {
        std::size_t const begin = random() % words.size();
        text += Cut(words, begin, 1 + random() % words.size());
    }
    return Cut(text, 0, inUnits);
}

/// One long text, or ten thousand of 1 to 15 units.
std::vector<UTF16String> Texts(benchmark::State const& inState) {
    auto const kind = static_cast<Kind>(inState.range(0));
    if (inState.range(1) == 0) {
        return {Text(kind, kLongText)};
    }
    std::vector<UTF16String> texts;
    UTF16String const source = Text(kind, kLongText);
    std::mt19937 random(11);
    for (int i = 0; i < 10000; ++i) {
        texts.push_back(Cut(source, random() % (kLongText - 15), 1 + random() % 15));
    }
    return texts;
}

UChar const* ICU(UTF16String const& inText) {
    return reinterpret_cast<UChar const*>(inText.data());
}

char const* Chars(UTF8String const& inText) {
    return reinterpret_cast<char const*>(inText.data());
}

std::int32_t Length(std::size_t inLength) {
    return static_cast<std::int32_t>(inLength);
}

// Reserving room for the longest result and shrinking is faster than asking for the length first.
UTF8String ICUToUTF8(UTF16String const& inText) {
    UTF8String result(3 * inText.size(), 0);
    std::int32_t length = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strToUTF8(reinterpret_cast<char*>(result.data()), Length(result.size()), &length, ICU(inText),
                Length(inText.size()), &error);
    result.resize(static_cast<std::size_t>(length));
    return result;
}

UTF16String ICUFromUTF8(UTF8String const& inText) {
    UTF16String result(inText.size(), 0);
    std::int32_t length = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strFromUTF8(reinterpret_cast<UChar*>(result.data()), Length(result.size()), &length,
                  Chars(inText), Length(inText.size()), &error);
    result.resize(static_cast<std::size_t>(length));
    return result;
}

/// Converts each text in turn; `inConvert` takes a text and its size in units.
template <typename Texts, typename Convert>
void Run(benchmark::State& ioState, Texts const& inTexts, Convert const& inConvert) {
    std::int64_t units = 0;
    for (auto const& text : inTexts) {
        units += static_cast<std::int64_t>(
            sizeof(text[0]) == 2 ? text.size()
                                 : UTF8to16(UTF8String(text.begin(), text.end())).size());
    }
    for (auto _ : ioState) {
        for (auto const& text : inTexts) {
            inConvert(text);
        }
    }
    ioState.SetLabel(std::string(kKindNames[ioState.range(0)]) +
                     (ioState.range(1) == 0 ? ", 140 KB" : ", 1 to 15 units"));
    ioState.SetBytesProcessed(ioState.iterations() * units * 2);
}

std::vector<UTF8String> Encoded(std::vector<UTF16String> const& inTexts) {
    std::vector<UTF8String> bytes;
    for (UTF16String const& text : inTexts) {
        bytes.push_back(UTF16to8(text));
    }
    return bytes;
}

void EncodeBrindle(benchmark::State& ioState) {
    Run(ioState, Texts(ioState),
        [](auto const& text) { benchmark::DoNotOptimize(UTF16to8(text)); });
}

void EncodeICU(benchmark::State& ioState) {
    Run(ioState, Texts(ioState),
        [](auto const& text) { benchmark::DoNotOptimize(ICUToUTF8(text)); });
}

void EncodeICUIntoBuffer(benchmark::State& ioState) {
    std::vector<char> buffer(3 * kLongText);
    Run(ioState, Texts(ioState), [&](auto const& text) {
        std::int32_t length = 0;
        UErrorCode error = U_ZERO_ERROR;
        u_strToUTF8(buffer.data(), Length(buffer.size()), &length, ICU(text), Length(text.size()),
                    &error);
        benchmark::DoNotOptimize(length);
        benchmark::ClobberMemory();
    });
}

/// iconv, into a caller's buffer.
template <typename Texts>
void RunIconv(benchmark::State& ioState, Texts const& inTexts, char const* inTo,
              char const* inFrom) {
    std::vector<char> buffer(4 * kLongText);
    iconv_t const converter = iconv_open(inTo, inFrom);
    Run(ioState, inTexts, [&](auto const& text) {
        char* in = const_cast<char*>(reinterpret_cast<char const*>(text.data()));
        std::size_t inLeft = text.size() * sizeof(text[0]);
        char* out = buffer.data();
        std::size_t outLeft = buffer.size();
        benchmark::DoNotOptimize(iconv(converter, &in, &inLeft, &out, &outLeft));
        benchmark::ClobberMemory();
    });
    iconv_close(converter);
}

void EncodeIconv(benchmark::State& ioState) {
    RunIconv(ioState, Texts(ioState), "UTF-8", "UTF-16LE");
}

void DecodeBrindle(benchmark::State& ioState) {
    Run(ioState, Encoded(Texts(ioState)),
        [](auto const& text) { benchmark::DoNotOptimize(UTF8to16(text)); });
}

void DecodeICU(benchmark::State& ioState) {
    Run(ioState, Encoded(Texts(ioState)),
        [](auto const& text) { benchmark::DoNotOptimize(ICUFromUTF8(text)); });
}

void DecodeICUIntoBuffer(benchmark::State& ioState) {
    std::vector<UChar> buffer(3 * kLongText);
    Run(ioState, Encoded(Texts(ioState)), [&](auto const& text) {
        std::int32_t length = 0;
        UErrorCode error = U_ZERO_ERROR;
        u_strFromUTF8(buffer.data(), Length(buffer.size()), &length, Chars(text),
                      Length(text.size()), &error);
        benchmark::DoNotOptimize(length);
        benchmark::ClobberMemory();
    });
}

void DecodeIconv(benchmark::State& ioState) {
    RunIconv(ioState, Encoded(Texts(ioState)), "UTF-16LE", "UTF-8");
}

void EncodeWithKernels(benchmark::State& ioState, UnicodeKernels const& inKernels) {
    Run(ioState, Texts(ioState), [&](auto const& text) {
        benchmark::DoNotOptimize(EncodeWith(inKernels, text.data(), text.size()));
    });
}

void DecodeWithKernels(benchmark::State& ioState, UnicodeKernels const& inKernels) {
    Run(ioState, Encoded(Texts(ioState)), [&](auto const& text) {
        benchmark::DoNotOptimize(DecodeWith(inKernels, text.data(), text.size()));
    });
}

/// The speed of memory, with which the ASCII rows are compared: one copy of the UTF-16 text.
void CopyText(benchmark::State& ioState) {
    Run(ioState, Texts(ioState),
        [](auto const& text) { benchmark::DoNotOptimize(UTF16String(text.data(), text.size())); });
}

void EveryText(benchmark::internal::Benchmark* ioBenchmark) {
    ioBenchmark->ArgNames({"kind", "short"});
    for (int isShort = 0; isShort < 2; ++isShort) {
        for (int const kind : {kASCII, kLatin, kCJK, kMixed}) {
            ioBenchmark->Args({kind, isShort});
        }
    }
}

BENCHMARK(EncodeBrindle)->Name("UTF16to8/brindle")->Apply(EveryText);
BENCHMARK(EncodeICU)->Name("UTF16to8/ICU")->Apply(EveryText);
BENCHMARK(EncodeICUIntoBuffer)->Name("UTF16to8/(ICU into a buffer)")->Apply(EveryText);
BENCHMARK(EncodeIconv)->Name("UTF16to8/(iconv into a buffer)")->Apply(EveryText);
BENCHMARK(DecodeBrindle)->Name("UTF8to16/brindle")->Apply(EveryText);
BENCHMARK(DecodeICU)->Name("UTF8to16/ICU")->Apply(EveryText);
BENCHMARK(DecodeICUIntoBuffer)->Name("UTF8to16/(ICU into a buffer)")->Apply(EveryText);
BENCHMARK(DecodeIconv)->Name("UTF8to16/(iconv into a buffer)")->Apply(EveryText);
BENCHMARK(CopyText)->Name("UTF16to8/(a copy of the text)")->Apply(EveryText);

/// Each set of kernels that this processor has, called without the library's boundary between.
bool const S_hasKernelRows = [] {
    for (UnicodeKernels const* const kernels : brindle::utility::impl::AllUnicodeKernels()) {
        if (kernels != nullptr) {
            auto const who = std::string("/(brindle, ") + kernels->name + " kernels)";
            benchmark::RegisterBenchmark(("UTF16to8" + who).c_str(), EncodeWithKernels, *kernels)
                ->Apply(EveryText);
            benchmark::RegisterBenchmark(("UTF8to16" + who).c_str(), DecodeWithKernels, *kernels)
                ->Apply(EveryText);
        }
    }
    return true;
}();

} // namespace
