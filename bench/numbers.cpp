#include <brindle/utility/Calculator.h>
#include <brindle/utility/Numbers.h>

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <muParser.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <locale>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace brindle;
using namespace brindle::utility;

constexpr std::size_t kCount = 1024; // a power of two

/// Amounts as number fields show them, of one to nine integer digits and either sign.
std::vector<double> const& Doubles() {
    static std::vector<double> const doubles = [] {
        std::mt19937 random(1);
        std::vector<double> values;
        while (values.size() < kCount) {
            double const magnitude = std::pow(10.0, static_cast<double>(random() % 9'000) / 1'000);
            values.push_back(random() % 2 == 0 ? magnitude : -magnitude);
        }
        return values;
    }();
    return doubles;
}

/// Integers of one to nineteen digits.
std::vector<std::int64_t> const& Integers() {
    static std::vector<std::int64_t> const integers = [] {
        std::mt19937_64 random(1);
        std::vector<std::int64_t> values;
        while (values.size() < kCount) {
            values.push_back(static_cast<std::int64_t>(random()) >> random() % 63);
        }
        return values;
    }();
    return integers;
}

/// The doubles with all the digits that tell them apart.
template <typename Text>
std::vector<Text> const& Texts() {
    static std::vector<Text> const texts = [] {
        std::vector<Text> values;
        for (double const value : Doubles()) {
            std::string const text = fmt::format("{}", value);
            values.emplace_back(text.begin(), text.end());
        }
        return values;
    }();
    return texts;
}

/// What users type, in a grammar that both calculators read in the same way.
template <typename Text>
std::vector<Text> const& Expressions() {
    static std::vector<Text> const texts = [] {
        std::vector<Text> values;
        for (std::string const text :
             {"42", "1+2", "1920/2", "12.5*4-3", "(1920-640)/2", "3*(4+5)*(6-1)", "100-15-3.25",
              "(1+2)*(3+4)-(5-6)", "2^10-1", "((16+4)*0.5+(9-3)*2)-7.75"}) {
            values.emplace_back(text.begin(), text.end());
        }
        return values;
    }();
    return texts;
}

class Grouping : public std::numpunct<char> {
    std::string do_grouping() const override { return "\3"; }
    char do_thousands_sep() const override { return ','; }
};

std::locale const& GroupingLocale() {
    static std::locale const locale(std::locale::classic(), new Grouping);
    return locale;
}

/// One call for each value in turn.
template <typename Values, typename Function>
void Each(benchmark::State& ioState, Values const& inValues, Function inFunction) {
    std::size_t i = 0;
    for (auto _ : ioState) {
        benchmark::DoNotOptimize(inFunction(inValues[i]));
        i = i + 1 == inValues.size() ? 0 : i + 1;
    }
    ioState.SetItemsProcessed(ioState.iterations());
}

void Write_Brindle(benchmark::State& ioState) {
    Each(ioState, Doubles(),
         [](double inValue) { return NumberToString(inValue, 1, 2, kNumberFormat_Group); });
}

void Write_Stream(benchmark::State& ioState) {
    GroupingLocale();
    Each(ioState, Doubles(), [](double inValue) {
        std::ostringstream stream;
        stream.imbue(GroupingLocale());
        stream.setf(std::ios_base::fixed, std::ios_base::floatfield);
        stream.precision(2);
        stream << inValue;
        return stream.str();
    });
}

void Write_Printf(benchmark::State& ioState) {
    Each(ioState, Doubles(), [](double inValue) {
        char text[512];
        return std::string(text, text + std::snprintf(text, sizeof text, "%.2f", inValue));
    });
}

void Write_Fmt(benchmark::State& ioState) {
    Each(ioState, Doubles(), [](double inValue) { return fmt::format("{:.2f}", inValue); });
}

void Write_FmtGrouped(benchmark::State& ioState) {
    Each(ioState, Doubles(),
         [](double inValue) { return fmt::format(GroupingLocale(), "{:.2Lf}", inValue); });
}

void WriteInteger_Brindle(benchmark::State& ioState) {
    Each(ioState, Integers(), [](std::int64_t inValue) { return NumberToString(inValue); });
}

void WriteInteger_Stream(benchmark::State& ioState) {
    Each(ioState, Integers(), [](std::int64_t inValue) {
        std::ostringstream stream;
        stream << inValue;
        return stream.str();
    });
}

void WriteInteger_Printf(benchmark::State& ioState) {
    Each(ioState, Integers(), [](std::int64_t inValue) {
        char text[24];
        auto const value = static_cast<long long>(inValue);
        return std::string(text, text + std::snprintf(text, sizeof text, "%lld", value));
    });
}

void WriteInteger_Fmt(benchmark::State& ioState) {
    Each(ioState, Integers(), [](std::int64_t inValue) { return fmt::format("{}", inValue); });
}

void Read_Brindle(benchmark::State& ioState) {
    Each(ioState, Texts<UTF16String>(),
         [](UTF16String const& inText) { return StringToNumber(inText, 0); });
}

void Read_Stream(benchmark::State& ioState) {
    Each(ioState, Texts<std::string>(), [](std::string const& inText) {
        std::istringstream stream(inText);
        double value = 0.0;
        stream >> value;
        return value;
    });
}

void Read_C(benchmark::State& ioState) {
    Each(ioState, Texts<std::string>(),
         [](std::string const& inText) { return std::strtod(inText.c_str(), nullptr); });
}

void Calculate_Brindle(benchmark::State& ioState) {
    Each(ioState, Expressions<UTF16String>(),
         [](UTF16String const& inText) { return Calculate(inText); });
}

/// One parser is reused, as its users do; each expression is parsed and evaluated each time.
void Calculate_MuParser(benchmark::State& ioState) {
    mu::Parser parser;
    Each(ioState, Expressions<std::string>(), [&parser](std::string const& inText) {
        parser.SetExpr(inText);
        return parser.Eval();
    });
}

BENCHMARK(Write_Brindle)->Name("NumberToString/brindle/double, grouped, two decimals");
BENCHMARK(Write_Stream)->Name("NumberToString/std::ostringstream/double, grouped, two decimals");
BENCHMARK(Write_Printf)->Name("NumberToString/snprintf, no groups/double, grouped, two decimals");
BENCHMARK(Write_Fmt)->Name("NumberToString/fmt, no groups/double, grouped, two decimals");
BENCHMARK(Write_FmtGrouped)->Name("NumberToString/fmt/double, grouped, two decimals");
BENCHMARK(WriteInteger_Brindle)->Name("NumberToString/brindle/int64");
BENCHMARK(WriteInteger_Stream)->Name("NumberToString/std::ostringstream/int64");
BENCHMARK(WriteInteger_Printf)->Name("NumberToString/snprintf/int64");
BENCHMARK(WriteInteger_Fmt)->Name("NumberToString/fmt/int64");
BENCHMARK(Read_Brindle)->Name("StringToNumber/brindle/shortest forms");
BENCHMARK(Read_Stream)->Name("StringToNumber/std::istringstream/shortest forms");
BENCHMARK(Read_C)->Name("StringToNumber/strtod/shortest forms");
BENCHMARK(Calculate_Brindle)->Name("Calculate/brindle/ten expressions");
BENCHMARK(Calculate_MuParser)->Name("Calculate/muParser/ten expressions");

} // namespace
