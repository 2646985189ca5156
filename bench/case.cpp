#include <brindle/utility/StringUtils.h>

#include <benchmark/benchmark.h>
#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include <string>

namespace {

using brindle::UTF16String;

/// 64 KB of a language: its sample repeated.
UTF16String Text(int inLanguage) {
    static char16_t const* const samples[] = {
        u"The quick brown Fox jumps over the lazy Dog. ",
        u"Zażółć gęślą jaźń, Señor Müller élève à l’École Ünïvërsité. ",
        u"Съешь же ещё этих мягких французских Булок. Ξεσκεπάζω την Ψυχοφθόρα βδελυγμία. ",
        u"天地玄黄宇宙洪荒日月盈昃辰宿列张寒来暑往秋收冬藏闰余成岁律吕调阳。"};
    std::u16string const sample = samples[inLanguage];
    UTF16String text;
    while (text.size() < 32 * 1024) {
        text.append(sample.begin(), sample.end());
    }
    text.resize(32 * 1024);
    return text;
}

void SetBytes(benchmark::State& ioState, UTF16String const& inText) {
    static char const* const names[] = {"ASCII", "Latin", "Cyrillic and Greek", "CJK"};
    ioState.SetLabel(names[ioState.range(0)]);
    ioState.SetBytesProcessed(ioState.iterations() * static_cast<std::int64_t>(inText.size() * 2));
}

template <UTF16String (*Convert)(UTF16String const&)>
void Brindle(benchmark::State& ioState) {
    UTF16String const text = Text(static_cast<int>(ioState.range(0)));
    for (auto _ : ioState) {
        benchmark::DoNotOptimize(Convert(text));
    }
    SetBytes(ioState, text);
}

template <typename Convert>
void Icu(benchmark::State& ioState, Convert inConvert) {
    UTF16String const text = Text(static_cast<int>(ioState.range(0)));
    auto const* const units = reinterpret_cast<UChar const*>(text.data());
    auto const count = static_cast<std::int32_t>(text.size());
    for (auto _ : ioState) {
        // A new string for each result, like in the library.
        std::u16string result(text.size() + text.size() / 8, u'\0');
        UErrorCode error = U_ZERO_ERROR;
        auto const capacity = static_cast<std::int32_t>(result.size());
        benchmark::DoNotOptimize(inConvert(&result[0], capacity, units, count, &error));
        benchmark::DoNotOptimize(result.data());
        if (U_FAILURE(error)) {
            ioState.SkipWithError(u_errorName(error));
        }
    }
    SetBytes(ioState, text);
}

void IcuFold(benchmark::State& ioState) {
    Icu(ioState, [](UChar* outText, std::int32_t inCapacity, UChar const* inText,
                    std::int32_t inCount, UErrorCode* ioError) {
        return u_strFoldCase(outText, inCapacity, inText, inCount, U_FOLD_CASE_DEFAULT, ioError);
    });
}

void IcuUpper(benchmark::State& ioState) {
    Icu(ioState, [](UChar* outText, std::int32_t inCapacity, UChar const* inText,
                    std::int32_t inCount, UErrorCode* ioError) {
        return u_strToUpper(outText, inCapacity, inText, inCount, "", ioError);
    });
}

BENCHMARK(Brindle<brindle::utility::FoldCase>)->Name("FoldCase/brindle")->DenseRange(0, 3);
BENCHMARK(IcuFold)->Name("FoldCase/ICU")->DenseRange(0, 3);
BENCHMARK(Brindle<brindle::utility::UpperCase>)->Name("UpperCase/brindle")->DenseRange(0, 3);
BENCHMARK(IcuUpper)->Name("UpperCase/ICU")->DenseRange(0, 3);

} // namespace
