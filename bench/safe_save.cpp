#include "bench/WorkingDirectory.h"

#include <brindle/filesupport/NativePath.h>
#include <brindle/proplist/PropListUtils.h>

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

void Fill(brindle::proplist::PropList& ioList) {
    for (std::uint8_t key = 'a'; key < 'a' + 20; ++key) {
        brindle::UTF8String const name{'k', 'e', 'y', key};
        switch (key % 4) {
        case 0:
            ioList.SetValue(name, std::int32_t{key} * 1000);
            break;
        case 1:
            ioList.SetValue(name, key / 3.0);
            break;
        case 2:
            ioList.SetValue(name, key % 8 == 2);
            break;
        default:
            ioList.SetValue(name, brindle::UTF16String(30, key));
        }
    }
}

void Save_Brindle(benchmark::State& ioState) {
    WorkingDirectory const directory;
    auto file = brindle::filesupport::FileFromNative(directory.Path() + "/prefs.xml");
    brindle::proplist::PropList list;
    Fill(list);
    for (auto _ : ioState) {
        brindle::proplist::utils::SavePropList(file, list);
    }
}

void Save_C(benchmark::State& ioState, bool inSyncsDirectory) {
    WorkingDirectory const directory;
    auto const target = directory.Path() + "/prefs.xml";
    auto const temp = directory.Path() + "/prefs.new.xml";
    brindle::proplist::PropList list;
    Fill(list);
    brindle::UTF8String document;
    brindle::proplist::utils::WritePropList(document, list);
    for (auto _ : ioState) {
        int const file = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        auto const written = ::write(file, document.data(), document.size());
        bool isSaved = written == static_cast<ssize_t>(document.size()) && ::fsync(file) == 0 &&
                       ::close(file) == 0 && std::rename(temp.c_str(), target.c_str()) == 0;
        if (inSyncsDirectory) {
            int const parent = ::open(directory.Path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            isSaved = ::fsync(parent) == 0 && ::close(parent) == 0 && isSaved;
        }
        if (!isSaved) {
            ioState.SkipWithError("not saved");
            break;
        }
    }
}

BENCHMARK(Save_Brindle)->Name("SavePropList/brindle/20 entries")->UseRealTime();
BENCHMARK_CAPTURE(Save_C, Synced, true)
    ->Name("SavePropList/C, directory synced/20 entries")
    ->UseRealTime();
BENCHMARK_CAPTURE(Save_C, Unsynced, false)
    ->Name("SavePropList/(C, directory not synced)/20 entries")
    ->UseRealTime();

} // namespace
