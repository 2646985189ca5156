// Any bytes as the file of the trace database: it is read without a fault, what is written from it
// is lines of three fields, and that reads back as the same categories.

#include "debug/src/trace/TraceDatabase.h"

#include "tests/support/TemporaryDirectory.h"

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

std::string MakeFileName() {
    static auto const directory = brindle::tests::TemporaryDirectory::InMemory();
    ::setenv("XDG_CONFIG_HOME", directory.Native().c_str(), 1);
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
