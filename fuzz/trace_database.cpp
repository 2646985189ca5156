// Any bytes as the file of the trace database: it is read without a fault, what is written from it
// is lines of three fields, and that reads back as the same categories.

#include "debug/src/trace/TraceDatabase.h"

#include <brindle/filesupport/Dir.h>
#include <brindle/filesupport/NativePath.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>

namespace {

/// In memory where the system has such a directory.
std::string MakeFileName() {
    std::error_code ignored;
    bool const hasMemory = std::filesystem::is_directory("/dev/shm", ignored);
    std::string directory = hasMemory ? "/dev/shm/brindle-fuzz-XXXXXX" : "/tmp/brindle-fuzz-XXXXXX";
    if (::mkdtemp(directory.data()) == nullptr ||
        ::setenv("XDG_CONFIG_HOME", directory.c_str(), 1) != 0) {
        std::abort();
    }
    static std::string const toRemove = directory;
    std::atexit([] { std::filesystem::remove_all(toRemove); });
    auto const preferences = brindle::filesupport::Dir::PrefDir();
    return brindle::filesupport::NativePath(preferences) + "/Trace Database.txt";
}

std::string SavedAgain(std::string const& inFile) {
    brindle::debug::TraceDatabase database;
    database.Load();
    database.Save();
    std::ifstream file(inFile, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* inData, std::size_t inSize) {
    static std::string const file = MakeFileName();
    std::ofstream(file, std::ios::binary)
        .write(reinterpret_cast<char const*>(inData), static_cast<std::streamsize>(inSize));
    auto const saved = SavedAgain(file);
    bool const isLines = saved.empty() || saved.back() == '\n';
    if (!isLines || std::count(saved.begin(), saved.end(), '\t') % 2 != 0 ||
        saved.find('\0') != std::string::npos || SavedAgain(file) != saved) {
        std::abort();
    }
    return 0;
}
