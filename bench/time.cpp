#include <brindle/time/Timecode.h>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace brindle::time;

constexpr std::size_t kCount = 1024;

/// Times of up to a day on either side of 0.
std::vector<std::int64_t> RandomTicks() {
    std::mt19937_64 random(1);
    std::uniform_int_distribution<std::int64_t> ticks(-86'400 * kTicksPerSecond,
                                                      86'400 * kTicksPerSecond);
    std::vector<std::int64_t> all(kCount);
    for (std::int64_t& one : all) {
        one = ticks(random);
    }
    return all;
}

std::vector<TickTime> RandomTimes() {
    std::vector<TickTime> times;
    for (std::int64_t const ticks : RandomTicks()) {
        times.push_back(TickTime::TicksToTickTime(ticks));
    }
    return times;
}

/// Applies an operation to every value and keeps the results.
template <class Value, class Operation>
void Apply(benchmark::State& ioState, std::vector<Value> const& inValues, Operation inOperation) {
    std::vector<decltype(inOperation(inValues[0]))> results(inValues.size());
    for (auto _ : ioState) {
        for (std::size_t i = 0; i < inValues.size(); ++i) {
            results[i] = inOperation(inValues[i]);
        }
        benchmark::DoNotOptimize(results.data());
        benchmark::ClobberMemory();
    }
    ioState.SetItemsProcessed(ioState.iterations() * static_cast<std::int64_t>(inValues.size()));
}

/// A value that the compiler does not know.
template <class Value>
Value Unknown(Value inValue) {
    benchmark::DoNotOptimize(inValue);
    return inValue;
}

void Add_Brindle(benchmark::State& ioState) {
    TickTime const other = Unknown(TickTime(1.0));
    Apply(ioState, RandomTimes(), [other](TickTime inTime) { return inTime + other; });
}

void Add_Bare(benchmark::State& ioState) {
    std::int64_t const other = Unknown(kTicksPerSecond);
    Apply(ioState, RandomTicks(), [other](std::int64_t inTicks) { return inTicks + other; });
}

void Compare_Brindle(benchmark::State& ioState) {
    TickTime const other = Unknown(TickTime(1.0));
    Apply(ioState, RandomTimes(), [other](TickTime inTime) { return char{inTime < other}; });
}

void Compare_Bare(benchmark::State& ioState) {
    std::int64_t const other = Unknown(kTicksPerSecond);
    Apply(ioState, RandomTicks(), [other](std::int64_t inTicks) { return char{inTicks < other}; });
}

void ScaleByInteger_Brindle(benchmark::State& ioState) {
    int const factor = Unknown(3);
    Apply(ioState, RandomTimes(), [factor](TickTime inTime) { return inTime * factor; });
}

void ScaleByInteger_Bare(benchmark::State& ioState) {
    int const factor = Unknown(3);
    Apply(ioState, RandomTicks(), [factor](std::int64_t inTicks) { return inTicks * factor; });
}

void ScaleByDouble_Brindle(benchmark::State& ioState) {
    double const factor = Unknown(1.001);
    Apply(ioState, RandomTimes(), [factor](TickTime inTime) { return inTime * factor; });
}

void ScaleByDouble_Bare(benchmark::State& ioState) {
    double const factor = Unknown(1.001);
    Apply(ioState, RandomTicks(), [factor](std::int64_t inTicks) {
        return static_cast<std::int64_t>(static_cast<double>(inTicks) * factor);
    });
}

void ToFrameOfAnyRate_Brindle(benchmark::State& ioState) {
    FrameRate const rate = Unknown(kFrameRate_VideoNTSC);
    Apply(ioState, RandomTimes(), [rate](TickTime inTime) { return inTime.ToFrame64(rate); });
}

void ToFrameOfAnyRate_Bare(benchmark::State& ioState) {
    std::int64_t const period = Unknown(std::int64_t{8475667200});
    Apply(ioState, RandomTicks(), [period](std::int64_t inTicks) { return inTicks / period; });
}

void ToFrameOfAConstant_Brindle(benchmark::State& ioState) {
    Apply(ioState, RandomTimes(),
          [](TickTime inTime) { return inTime.ToFrame64(kFrameRate_VideoNTSC); });
}

void ToFrameOfAConstant_Bare(benchmark::State& ioState) {
    Apply(ioState, RandomTicks(), [](std::int64_t inTicks) { return inTicks / 8475667200; });
}

/// Drop-frame timecode at 29.97 as a program writes it that keeps seconds in a double.
std::string NaiveTimecode(double inSeconds) {
    long frame = std::lround(std::fabs(inSeconds) * 30000 / 1001);
    long const tens = frame / 17982;
    long const rest = frame % 17982;
    frame += 18 * tens + (rest > 1 ? 2 * ((rest - 2) / 1798) : 0);
    char text[40];
    std::snprintf(text, sizeof text, "%s%02ld:%02ld:%02ld;%02ld", inSeconds < 0 ? "-" : "",
                  frame / 108000, frame / 1800 % 60, frame / 30 % 60, frame % 30);
    return text;
}

double NaiveSeconds(std::string const& inText) {
    bool const isNegative = inText[0] == '-';
    int hours = 0;
    int minutes = 0;
    int seconds = 0;
    int frames = 0;
    std::sscanf(inText.c_str() + isNegative, "%d:%d:%d;%d", &hours, &minutes, &seconds, &frames);
    int const total = hours * 60 + minutes;
    int const frame = (total * 60 + seconds) * 30 + frames - 2 * (total - total / 10);
    return (isNegative ? -frame : frame) * 1001 / 30000.0;
}

TimecodeFormat DropFrame() {
    return *TimecodeFormat::Create(kFrameRate_VideoNTSC, FrameCounting::kDropFrame);
}

void ToText_Brindle(benchmark::State& ioState) {
    TimecodeFormat const format = DropFrame();
    Apply(ioState, RandomTimes(), [&](TickTime inTime) { return format.ToText(inTime); });
}

void ToText_Naive(benchmark::State& ioState) {
    std::vector<double> seconds;
    for (TickTime const& time : RandomTimes()) {
        seconds.push_back(time / TickTime(1.0));
    }
    Apply(ioState, seconds, NaiveTimecode);
}

std::vector<std::string> RandomTexts() {
    std::vector<std::string> texts;
    for (TickTime const& time : RandomTimes()) {
        texts.push_back(DropFrame().ToText(time));
    }
    return texts;
}

void ToTime_Brindle(benchmark::State& ioState) {
    TimecodeFormat const format = DropFrame();
    Apply(ioState, RandomTexts(), [&](std::string const& inText) { return format.ToTime(inText); });
}

void ToTime_Naive(benchmark::State& ioState) {
    Apply(ioState, RandomTexts(), NaiveSeconds);
}

BENCHMARK(Add_Brindle)->Name("TickTime add/brindle/1024 times");
BENCHMARK(Add_Bare)->Name("TickTime add/int64_t/1024 times");
BENCHMARK(Compare_Brindle)->Name("TickTime compare/brindle/1024 times");
BENCHMARK(Compare_Bare)->Name("TickTime compare/int64_t/1024 times");
BENCHMARK(ScaleByInteger_Brindle)->Name("TickTime scale/brindle/1024 times by an integer");
BENCHMARK(ScaleByInteger_Bare)->Name("TickTime scale/int64_t/1024 times by an integer");
BENCHMARK(ScaleByDouble_Brindle)->Name("TickTime scale/brindle/1024 times by a double");
BENCHMARK(ScaleByDouble_Bare)->Name("TickTime scale/int64_t/1024 times by a double");
BENCHMARK(ToFrameOfAnyRate_Brindle)->Name("TickTime to frame/brindle/1024 times at any rate");
BENCHMARK(ToFrameOfAnyRate_Bare)->Name("TickTime to frame/int64_t/1024 times at any rate");
BENCHMARK(ToFrameOfAConstant_Brindle)->Name("TickTime to frame/brindle/1024 times at a constant");
BENCHMARK(ToFrameOfAConstant_Bare)->Name("TickTime to frame/int64_t/1024 times at a constant");
BENCHMARK(ToText_Brindle)->Name("timecode to text/brindle/1024 times");
BENCHMARK(ToText_Naive)->Name("timecode to text/snprintf of double seconds/1024 times");
BENCHMARK(ToTime_Brindle)->Name("timecode to time/brindle/1024 texts");
BENCHMARK(ToTime_Naive)->Name("timecode to time/sscanf to double seconds/1024 texts");

} // namespace
