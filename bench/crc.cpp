#include <brindle/filesupport/CRCByteStream.h>
#include <brindle/filesupport/CountingByteStream.h>

#include <benchmark/benchmark.h>
#include <zlib.h>

#include <cstdint>
#include <numeric>
#include <string>
#include <vector>

namespace {

std::vector<std::uint8_t> Data(benchmark::State const& inState) {
    std::vector<std::uint8_t> data(static_cast<std::size_t>(inState.range(0)));
    std::iota(data.begin(), data.end(), std::uint8_t{0});
    return data;
}

void Report(benchmark::State& ioState) {
    ioState.SetLabel("blocks of " + std::to_string(ioState.range(0)) + " bytes");
    ioState.SetBytesProcessed(ioState.iterations() * ioState.range(0));
}

void CRC_Brindle(benchmark::State& ioState) {
    auto const data = Data(ioState);
    brindle::filesupport::OCountingByteStream sink;
    brindle::filesupport::OCRCByteStream stream(sink);
    for (auto _ : ioState) {
        stream.WriteBlock(data.data(), static_cast<std::uint32_t>(data.size()));
        benchmark::DoNotOptimize(stream.Value());
    }
    Report(ioState);
}

void CRC_Zlib(benchmark::State& ioState) {
    auto const data = Data(ioState);
    auto sum = crc32(0, nullptr, 0);
    for (auto _ : ioState) {
        sum = crc32(sum, data.data(), static_cast<uInt>(data.size()));
        benchmark::DoNotOptimize(sum);
    }
    Report(ioState);
}

void EveryBlock(benchmark::internal::Benchmark* ioBenchmark) {
    ioBenchmark->Arg(16)->Arg(256)->Arg(4096)->Arg(1 << 20);
}

BENCHMARK(CRC_Brindle)->Name("OCRCByteStream/brindle")->Apply(EveryBlock);
BENCHMARK(CRC_Zlib)->Name("OCRCByteStream/zlib crc32")->Apply(EveryBlock);

} // namespace
