#include <brindle/filesupport/ByteStreamOperators.h>
#include <brindle/filesupport/CopyFile.h>
#include <brindle/filesupport/FilesystemPath.h>
#include <brindle/filesupport/PlatformByteStreams.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

namespace fs = std::filesystem;
using namespace brindle::filesupport;

constexpr std::uint32_t kSize = 1 << 20;

fs::path NewDirectory() {
    std::string path = "/dev/shm/brindle-bench-XXXXXX";
    if (::mkdtemp(path.data()) == nullptr) {
        std::abort();
    }
    return path;
}

/// In memory, so that the system's calls are measured and not a disk.
class TwoFiles {
public:
    TwoFiles() {
        std::ofstream(from, std::ios_base::binary) << std::string(kSize, 'x');
        std::ofstream(to, std::ios_base::binary) << "old";
    }
    TwoFiles(TwoFiles const&) = delete;
    TwoFiles& operator=(TwoFiles const&) = delete;
    ~TwoFiles() { fs::remove_all(mDirectory); }

private:
    fs::path const mDirectory = NewDirectory();

public:
    fs::path const from = mDirectory / "from";
    fs::path const to = mDirectory / "to";
};

void Report(benchmark::State& ioState) {
    ioState.SetBytesProcessed(ioState.iterations() * kSize);
}

void Operator_Brindle(benchmark::State& ioState) {
    TwoFiles const files;
    for (auto _ : ioState) {
        OPlatformByteStream(FileFromPath(files.to))
            << IPlatformByteStream(FileFromPath(files.from));
    }
    Report(ioState);
}

/// A stream of another class, of which the operator knows nothing.
void Operator_BrindleByTheByte(benchmark::State& ioState) {
    struct Unknown : IPlatformByteStream {
        using IPlatformByteStream::IPlatformByteStream;
    };
    TwoFiles const files;
    for (auto _ : ioState) {
        OPlatformByteStream(FileFromPath(files.to)) << Unknown(FileFromPath(files.from));
    }
    Report(ioState);
}

void Operator_Filebuf(benchmark::State& ioState) {
    TwoFiles const files;
    for (auto _ : ioState) {
        std::ifstream from(files.from, std::ios_base::binary);
        std::ofstream(files.to, std::ios_base::binary) << from.rdbuf();
    }
    Report(ioState);
}

void CopyFile_Brindle(benchmark::State& ioState) {
    TwoFiles const files;
    for (auto _ : ioState) {
        CopyFile(FileFromPath(files.from), FileFromPath(files.to));
    }
    Report(ioState);
}

void CopyFile_BrindleWithSum(benchmark::State& ioState) {
    TwoFiles const files;
    CopyOptions options;
    options.sum = true;
    for (auto _ : ioState) {
        benchmark::DoNotOptimize(
            CopyFile(FileFromPath(files.from), FileFromPath(files.to), options).crc);
    }
    Report(ioState);
}

/// Neither atomic nor durable.
void CopyFile_Standard(benchmark::State& ioState) {
    TwoFiles const files;
    for (auto _ : ioState) {
        fs::copy_file(files.from, files.to, fs::copy_options::overwrite_existing);
    }
    Report(ioState);
}

BENCHMARK(Operator_Brindle)->Name("Copying operator/brindle/1 MiB");
BENCHMARK(Operator_BrindleByTheByte)->Name("Copying operator/(brindle by the byte)/1 MiB");
BENCHMARK(Operator_Filebuf)->Name("Copying operator/std::filebuf/1 MiB");
BENCHMARK(CopyFile_Brindle)->Name("CopyFile/brindle/1 MiB");
BENCHMARK(CopyFile_BrindleWithSum)->Name("CopyFile/(brindle with a sum)/1 MiB");
BENCHMARK(CopyFile_Standard)->Name("CopyFile/std::filesystem/1 MiB");

} // namespace
