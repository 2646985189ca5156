#include "tests/BitwiseCRC.h"
#include "tests/host/Command.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace brindle::host {

namespace {

namespace fs = std::filesystem;

/// The line that `sum` writes for a file, from the bytes and the rules alone.
std::string LineFor(std::string const& inContent, std::string inPath) {
    std::uint32_t const crc = tests::BitwiseCRC(
        reinterpret_cast<std::uint8_t const*>(inContent.data()), inContent.size());
    std::string name;
    for (char const c : inPath) {
        name += c == '\\' ? "\\\\" : c == '\n' ? "\\n" : c == '\r' ? "\\r" : std::string(1, c);
    }
    char numbers[32];
    std::snprintf(numbers, sizeof numbers, "%08x  %zu  ", crc, inContent.size());
    return (name != inPath ? "\\" : "") + std::string(numbers) + name + "\n";
}

class Sum : public tests::Command {
protected:
    /// Makes a file, and keeps the line that is to come out for it.
    void MakeFile(std::string const& inName, std::string const& inContent) {
        fs::path const path = mTemporary.Native(inName);
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << inContent;
        Expect(inName, inContent);
    }

    void Expect(std::string const& inName, std::string const& inContent) {
        std::string const path = mTemporary.Native(inName);
        mLines.emplace_back(path, LineFor(inContent, path));
    }

    std::string ExpectedLines() {
        std::sort(mLines.begin(), mLines.end());
        std::string lines;
        for (auto const& line : mLines) {
            lines += line.second;
        }
        return lines;
    }

    std::vector<std::pair<std::string, std::string>> mLines;
};

TEST_F(Sum, TellsEveryKindOfNameAndFile) {
    std::string large;
    for (unsigned i = 0; i < 400'000; ++i) {
        large += static_cast<char>(i * i >> 3);
    }
    for (std::string const name : {"plain", "sub/one", "sub.one", "sub/deeper/two", "new\nline",
                                   "back\\slash", "return\rhere", "not \xFF\xC3 UTF-8 \xED\xA0\x80",
                                   "U+F05C \xEF\x81\x9C", ".hidden", " blanks ", "-dash"}) {
        MakeFile(name, "content of " + name);
    }
    MakeFile(std::string(255, 'n'), "long name");
    MakeFile("empty", "");
    MakeFile("large", large);
    fs::create_symlink("plain", mTemporary.Native("link to file"));
    Expect("link to file", "content of plain");
    fs::create_directory_symlink("..", mTemporary.Native("sub/circle"));
    fs::create_symlink("nowhere", mTemporary.Native("dangling"));
    fs::create_symlink("self", mTemporary.Native("self"));
    ASSERT_EQ(0, mkfifo(mTemporary.Native("fifo").c_str(), 0600));
    sockaddr_un address{AF_UNIX, "socket"};
    int const socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    fs::path const here = fs::current_path();
    fs::current_path(mTemporary.Native());
    ASSERT_EQ(0, ::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address));
    fs::current_path(here);
    ::close(socket);

    Outcome const outcome = Run("sum --jobs=2 '" + mTemporary.Native() + "'");
    EXPECT_EQ(ExpectedLines(), outcome.output);
    EXPECT_EQ(1, outcome.status) << "not everything could be summed";
    std::string const diagnostic = "brindle: " + mTemporary.Native("");
    EXPECT_EQ(diagnostic + "dangling: no such file or directory\n" + diagnostic +
                  "fifo: skipped, it is a FIFO\n" + diagnostic +
                  "self: no such file or directory\n" + diagnostic +
                  "socket: skipped, it is a socket\n",
              outcome.errors);
}

TEST_F(Sum, GoesDeeperThanTheKernelTakesAPath) {
    fs::path const here = fs::current_path();
    fs::current_path(mTemporary.Native());
    std::string const step(200, 'd');
    std::string name;
    for (int i = 0; i < 30; ++i) {
        fs::create_directory(step);
        fs::current_path(step);
        name += step + "/";
    }
    std::ofstream("bottom") << "deep";
    fs::current_path(here);
    Expect(name + "bottom", "deep");
    Outcome const outcome = Run("sum '" + mTemporary.Native() + "'");
    EXPECT_EQ(ExpectedLines(), outcome.output);
    EXPECT_EQ(0, outcome.status);
}

TEST_F(Sum, TakesFilesAndDirectoriesAndSortsThemTogether) {
    MakeFile("b/file", "1");
    MakeFile("a", "2");
    MakeFile("--x", "3");
    Outcome const outcome = Run("sum b a -- --x missing");
    EXPECT_EQ(LineFor("3", "--x") + LineFor("2", "a") + LineFor("1", "b/file"), outcome.output);
    EXPECT_EQ("brindle: missing: no such file or directory\n", outcome.errors);
    EXPECT_EQ(1, outcome.status);
    EXPECT_EQ(LineFor("1", "./b/file"), Run("sum ./b/").output);
    EXPECT_NE("", Run("sum /proc/self/status").output) << "files without a size have content too";
}

TEST_F(Sum, ReportsADirectoryItMayNotRead) {
    MakeFile("closed/file", "1");
    MakeFile("open", "2");
    fs::permissions(mTemporary.Native("closed"), fs::perms::none);
    if (::geteuid() != 0) {
        Outcome const outcome = Run("sum .");
        EXPECT_EQ(LineFor("2", "./open"), outcome.output);
        EXPECT_EQ("brindle: ./closed: the directory cannot be read\n", outcome.errors);
        EXPECT_EQ(1, outcome.status);
    }
    fs::permissions(mTemporary.Native("closed"), fs::perms::all);
}

TEST_F(Sum, WrongUsageSaysSoAndExitsWith2) {
    for (char const* const words : {"", "nonsense", "sum", "sum --nonsense .", "sum --jobs=0 .",
                                    "sum --jobs=1x .", "sum --jobs= .", "--nonsense"}) {
        Outcome const outcome = Run(words);
        EXPECT_EQ(2, outcome.status) << words;
        EXPECT_EQ("", outcome.output) << words;
        EXPECT_EQ(0u, outcome.errors.find("brindle: ")) << words;
    }
    for (char const* const words : {"--help", "sum --help", "--version"}) {
        Outcome const outcome = Run(words);
        EXPECT_EQ(0, outcome.status) << words;
        EXPECT_NE("", outcome.output) << words;
    }
}

TEST_F(Sum, AFullDiskBehindTheOutputIsAFailure) {
    if (fs::exists("/dev/full")) {
        MakeFile("a", "2");
        EXPECT_EQ(
            1,
            WEXITSTATUS(std::system(
                (BRINDLE_COMMAND " sum " + mTemporary.Native("a") + " >/dev/full 2>&1").c_str())));
    }
}

} // namespace

} // namespace brindle::host
