#include <brindle/utility/StringStreams.h>

#include <benchmark/benchmark.h>

#include <locale>
#include <sstream>
#include <string>

// Streams of the library's text types beside the standard ones of the same locale: a new stream for
// each text, as programs use them.

namespace {

template <typename Character>
struct Grouping : std::numpunct<Character> {
    Character do_decimal_point() const override { return ','; }
    Character do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

/// Makes a locale the global one for as long as a benchmark runs.
class InLocale {
public:
    explicit InLocale(benchmark::State& ioState) {
        if (ioState.range(0) != 0) {
            std::locale const wide(std::locale::classic(), new Grouping<wchar_t>);
            std::locale::global(std::locale(wide, new Grouping<char>));
        }
        ioState.SetLabel(ioState.range(0) != 0 ? "locale with grouping" : "classic locale");
    }
    InLocale(InLocale const&) = delete;
    InLocale& operator=(InLocale const&) = delete;
    ~InLocale() { std::locale::global(std::locale::classic()); }
};

template <typename Stream>
void Write(benchmark::State& ioState) {
    InLocale const locale(ioState);
    int number = 0;
    for (auto _ : ioState) {
        Stream stream;
        ++number;
        stream << number << ' ' << number * 0.5;
        benchmark::DoNotOptimize(stream.str());
    }
}

template <typename Stream>
void Read(benchmark::State& ioState) {
    InLocale const locale(ioState);
    std::string const narrow = "1234 word 77";
    decltype(std::declval<Stream>().str()) const text(narrow.begin(), narrow.end());
    for (auto _ : ioState) {
        Stream stream(text);
        double number = 0;
        std::basic_string<typename Stream::char_type> word;
        long last = 0;
        stream >> number >> word >> last;
        benchmark::DoNotOptimize(last);
    }
}

BENCHMARK(Write<brindle::oUTF16StringStream>)->Name("Text stream, write/brindle")->DenseRange(0, 1);
BENCHMARK(Write<std::wostringstream>)
    ->Name("Text stream, write/std::wostringstream")
    ->DenseRange(0, 1);
BENCHMARK(Read<brindle::iUTF16StringStream>)->Name("Text stream, read/brindle")->DenseRange(0, 1);
BENCHMARK(Read<std::wistringstream>)
    ->Name("Text stream, read/std::wistringstream")
    ->DenseRange(0, 1);

} // namespace
