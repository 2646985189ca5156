#include <brindle/filesupport/BufferByteStream.h>
#include <brindle/filesupport/BufferedByteStream.h>
#include <brindle/filesupport/RLEByteStream.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

namespace {

using namespace brindle::filesupport;

constexpr std::uint32_t kSize = 1 << 20;
constexpr std::uint32_t kBuffer = 64 << 10;

/// Bytes without runs, or a single run.
std::vector<std::uint8_t> Data(bool inIsRun) {
    std::vector<std::uint8_t> data(kSize, 'x');
    for (std::uint32_t i = 0; !inIsRun && i < kSize; ++i) {
        data[i] = static_cast<std::uint8_t>(i * 2654435761u >> 24);
    }
    return data;
}

void Report(benchmark::State& ioState) {
    ioState.SetBytesProcessed(ioState.iterations() * kSize);
}

void ReportRuns(benchmark::State& ioState) {
    ioState.SetLabel(ioState.range(0) != 0 ? "one long run" : "no runs");
    Report(ioState);
}

/// A file in shared memory, with a large buffer.
class MemoryFile {
public:
    explicit MemoryFile(std::ios_base::openmode inMode) {
        auto const data = Data(false);
        std::ofstream(kPath, std::ios_base::binary)
            .write(reinterpret_cast<char const*>(data.data()), kSize);
        file.pubsetbuf(mBuffer.data(), kBuffer);
        file.open(kPath, inMode | std::ios_base::binary);
    }
    ~MemoryFile() {
        file.close();
        std::remove(kPath);
    }

    std::filebuf file;

private:
    static constexpr char const* kPath = "/dev/shm/brindle_bench_bytes";

    std::vector<char> mBuffer = std::vector<char>(kBuffer);
};

void Get_Brindle(benchmark::State& ioState) {
    auto const data = Data(false);
    IBufferByteStream source(data.data(), kSize);
    IBufferedByteStream stream(source, kBuffer, 4096);
    for (auto _ : ioState) {
        stream.CurPos(0);
        unsigned sum = 0;
        for (std::uint32_t i = 0; i < kSize; ++i) {
            sum += stream.Get();
        }
        benchmark::DoNotOptimize(sum);
    }
    Report(ioState);
}

void Get_BrindleThroughTheBase(benchmark::State& ioState) {
    auto const data = Data(false);
    IBufferByteStream source(data.data(), kSize);
    IBufferedByteStream buffered(source, kBuffer, 4096);
    IByteStream* stream = &buffered;
    benchmark::DoNotOptimize(stream);
    for (auto _ : ioState) {
        stream->CurPos(0);
        unsigned sum = 0;
        for (std::uint32_t i = 0; i < kSize; ++i) {
            sum += stream->Get();
        }
        benchmark::DoNotOptimize(sum);
    }
    Report(ioState);
}

void Get_Filebuf(benchmark::State& ioState) {
    MemoryFile memory(std::ios_base::in);
    for (auto _ : ioState) {
        memory.file.pubseekpos(0);
        unsigned sum = 0;
        for (std::uint32_t i = 0; i < kSize; ++i) {
            sum += static_cast<unsigned>(memory.file.sbumpc());
        }
        benchmark::DoNotOptimize(sum);
    }
    Report(ioState);
}

void Put_Brindle(benchmark::State& ioState) {
    std::vector<std::uint8_t> target(kSize);
    OBufferByteStream sink(target.data(), kSize);
    OBufferedByteStream stream(sink, kBuffer, 4096);
    for (auto _ : ioState) {
        stream.CurPos(0);
        for (std::uint32_t i = 0; i < kSize; ++i) {
            stream.Put(static_cast<std::uint8_t>(i));
        }
        stream.Flush();
        benchmark::ClobberMemory();
    }
    Report(ioState);
}

void Put_BrindleThroughTheBase(benchmark::State& ioState) {
    std::vector<std::uint8_t> target(kSize);
    OBufferByteStream sink(target.data(), kSize);
    OBufferedByteStream buffered(sink, kBuffer, 4096);
    OByteStream* stream = &buffered;
    benchmark::DoNotOptimize(stream);
    for (auto _ : ioState) {
        stream->CurPos(0);
        for (std::uint32_t i = 0; i < kSize; ++i) {
            stream->Put(static_cast<std::uint8_t>(i));
        }
        buffered.Flush();
        benchmark::ClobberMemory();
    }
    Report(ioState);
}

void Put_Filebuf(benchmark::State& ioState) {
    MemoryFile memory(std::ios_base::in | std::ios_base::out);
    for (auto _ : ioState) {
        memory.file.pubseekpos(0);
        for (std::uint32_t i = 0; i < kSize; ++i) {
            memory.file.sputc(static_cast<char>(i));
        }
        memory.file.pubsync();
        benchmark::ClobberMemory();
    }
    Report(ioState);
}

void RLE_Encode(benchmark::State& ioState) {
    auto const data = Data(ioState.range(0) != 0);
    std::vector<std::uint8_t> target(kSize * 2);
    for (auto _ : ioState) {
        OBufferByteStream sink(target.data(), target.size());
        ORLEByteStream stream(sink);
        stream.WriteBlock(data.data(), kSize);
        stream.Flush();
        benchmark::ClobberMemory();
    }
    ReportRuns(ioState);
}

void RLE_Decode(benchmark::State& ioState) {
    auto data = Data(ioState.range(0) != 0);
    std::vector<std::uint8_t> packed(kSize * 2);
    OBufferByteStream sink(packed.data(), packed.size());
    ORLEByteStream encoder(sink);
    encoder.WriteBlock(data.data(), kSize);
    encoder.Flush();
    for (auto _ : ioState) {
        IBufferByteStream source(packed.data(), sink.Count());
        IRLEByteStream stream(source);
        stream.ReadBlock(data.data(), kSize);
        benchmark::ClobberMemory();
    }
    ReportRuns(ioState);
}

void RLE_Memcpy(benchmark::State& ioState) {
    auto const data = Data(ioState.range(0) != 0);
    std::vector<std::uint8_t> target(kSize);
    for (auto _ : ioState) {
        std::memcpy(target.data(), data.data(), kSize);
        benchmark::ClobberMemory();
    }
    ReportRuns(ioState);
}

void EveryData(benchmark::internal::Benchmark* ioBenchmark) {
    ioBenchmark->ArgName("run")->Arg(0)->Arg(1);
}

BENCHMARK(Get_Brindle)->Name("Get/brindle/1 MiB");
BENCHMARK(Get_BrindleThroughTheBase)->Name("Get/(brindle through the base)/1 MiB");
BENCHMARK(Get_Filebuf)->Name("Get/std::filebuf::sbumpc/1 MiB");
BENCHMARK(Put_Brindle)->Name("Put/brindle/1 MiB");
BENCHMARK(Put_BrindleThroughTheBase)->Name("Put/(brindle through the base)/1 MiB");
BENCHMARK(Put_Filebuf)->Name("Put/std::filebuf::sputc/1 MiB");
BENCHMARK(RLE_Encode)->Name("ORLEByteStream/brindle")->Apply(EveryData);
BENCHMARK(RLE_Memcpy)->Name("ORLEByteStream/(memcpy)")->Apply(EveryData);
BENCHMARK(RLE_Decode)->Name("IRLEByteStream/brindle")->Apply(EveryData);
BENCHMARK(RLE_Memcpy)->Name("IRLEByteStream/(memcpy)")->Apply(EveryData);

} // namespace
