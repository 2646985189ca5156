// Any lines for the console: they are executed without a fault, a line that is no command prints
// nothing, and the exercise of `filesupport.file` leaves nothing behind. Its paths are put below a
// fresh directory, and those that lead out of it are refused.

#include "tests/support/TemporaryDirectory.h"

#include <brindle/console/Completion.h>
#include <brindle/console/Console.h>
#include <brindle/debug/Trace.h>
#include <brindle/filesupport/Dir.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/utility/Unicode.h>

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <string>
#include <unistd.h>

namespace {

using namespace brindle;
namespace fs = std::filesystem;

/// Holds the preferences, and a directory "files".
std::string MakeDirectory() {
    static auto const temporary = tests::TemporaryDirectory::InMemory();
    std::string const directory = temporary.Native();
    for (char const* const name : {"XDG_CONFIG_HOME", "HOME", "XDG_DOCUMENTS_DIR"}) {
        ::setenv(name, directory.c_str(), 1);
    }
    fs::create_directory(directory + "/files");
    console::Initialize();
    return directory;
}

/// The line, with a path below the directory if it is the command that writes; otherwise empty.
UTF16String Harmless(UTF16String const& inLine, std::string const& inDirectory) {
    auto const blank = std::min(inLine.find(u' '), inLine.size());
    UTF16String name;
    for (auto const unit : inLine.substr(0, blank)) {
        name += static_cast<std::uint16_t>(unit >= 'A' && unit <= 'Z' ? unit + 32 : unit);
    }
    if (name.find(u"file"_utf16) == UTF16String::npos ||
        name.find(u"filesupport.dir"_utf16) != UTF16String::npos) {
        return inLine;
    }
    auto const root = inDirectory + "/files/";
    auto path = filesupport::FileFromNative(root + "x").FullPath();
    path.pop_back();
    path += inLine.substr(blank);
    auto const native = filesupport::NativePath(filesupport::File(path));
    bool const isBelow =
        native.compare(0, root.size(), root) == 0 && native.find("..") == std::string::npos;
    return isBelow ? inLine.substr(0, blank) + std::uint16_t{' '} + path : UTF16String();
}

void Execute(UTF16String const& inLine) {
    std::basic_stringbuf<std::uint16_t> buffer;
    UTF16OutputStream out(&buffer);
    bool isCommand = true;
    try {
        isCommand = console::ExecuteCommand(inLine, out);
    } catch (std::exception const&) {
        // What the databases throw.
    }
    if (!isCommand && !buffer.str().empty()) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* inData, std::size_t inSize) {
    static std::string const directory = MakeDirectory();
    UTF8String const text(inData, inSize);
    for (std::size_t start = 0; start < text.size();) {
        auto const end = std::min(text.find(std::uint8_t{'\n'}, start), text.size());
        auto const line = text.substr(start, end - start);
        auto const found = console::CompleteLine(line, line.size() / 2 + 1);
        if (found.start > line.size()) {
            std::abort();
        }
        Execute(Harmless(utility::UTF8to16(line), directory));
        start = end + 1;
    }
    if (!fs::is_empty(directory + "/files")) {
        std::abort();
    }
    Execute(u"debug.clear"_utf16);
    debug::ShutdownTraceManager();
    fs::remove(filesupport::NativePath(filesupport::Dir::PrefDir()) + "/Trace Database.txt");
    return 0;
}
