#include "tests/BitwiseCRC.h"
#include "tests/InTemporaryDirectory.h"

#include <map>
#include <sys/stat.h>
#include <sys/wait.h>

namespace brindle::host {

namespace {

namespace fs = std::filesystem;

/// The line that `sum` writes for a file, from the bytes and the rules alone.
std::string LineFor(std::string const& inContent, std::string const& inPath) {
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

class Sum : public tests::InTemporaryDirectory {
protected:
    /// Runs the command in the temporary directory; `inWords` is shell text. The exit status, with
    /// the output and the diagnostics in their members.
    int Run(std::string const& inWords) {
        std::string const command = "cd '" + mTemporary.Native() + "' && exec >'" +
                                    mResults.Native("out") + "' 2>'" + mResults.Native("err") +
                                    "' " BRINDLE_COMMAND " " + inWords;
        int const status = std::system(command.c_str());
        EXPECT_TRUE(WIFEXITED(status)) << inWords;
        mOutput = ContentOf(mResults.Native("out"));
        mErrors = ContentOf(mResults.Native("err"));
        return WEXITSTATUS(status);
    }

    /// Makes a file, and keeps the line that is to come out for it.
    void MakeFile(std::string const& inName, std::string const& inContent) {
        fs::create_directories(fs::path(Native(inName)).parent_path());
        Fill(inName, inContent);
        mLines[Native(inName)] = LineFor(inContent, Native(inName));
    }

    std::string ExpectedLines() const {
        std::string lines;
        for (auto const& line : mLines) {
            lines += line.second;
        }
        return lines;
    }

    tests::TemporaryDirectory mResults;
    std::map<std::string, std::string> mLines; // by path, so in the order of the output
    std::string mOutput, mErrors;
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
    MakeFile("empty", "");
    MakeFile("large", large);
    fs::create_symlink("/dev/null", Native("device"));
    fs::create_symlink("plain", Native("link"));
    mLines[Native("link")] = LineFor("content of plain", Native("link"));
    fs::create_directory_symlink("..", Native("sub/circle"));
    fs::create_symlink("nowhere", Native("dangling"));
    ASSERT_EQ(0, mknod(Native("fifo").c_str(), S_IFIFO | 0600, 0));
    ASSERT_EQ(0, mknod(Native("socket").c_str(), S_IFSOCK | 0600, 0));

    EXPECT_EQ(1, Run("sum --jobs=2 '" + mTemporary.Native() + "'")) << "not all could be summed";
    EXPECT_EQ(ExpectedLines(), mOutput);
    std::string const diagnostic = "brindle: " + Native("");
    EXPECT_EQ(diagnostic + "dangling: no such file or directory\n" + diagnostic +
                  "device: skipped, it is a device\n" + diagnostic +
                  "fifo: skipped, it is a FIFO\n" + diagnostic +
                  "socket: skipped, it is a socket\n",
              mErrors);
}

TEST_F(Sum, TakesFilesAndDirectoriesAndSortsThemTogether) {
    MakeFile("b/file", "1");
    MakeFile("a", "2");
    MakeFile("--x", "3");
    EXPECT_EQ(1, Run("sum b a -- --x missing"));
    EXPECT_EQ(LineFor("3", "--x") + LineFor("2", "a") + LineFor("1", "b/file"), mOutput);
    EXPECT_EQ("brindle: missing: no such file or directory\n", mErrors);
    EXPECT_EQ(0, Run("sum ./b/"));
    EXPECT_EQ(LineFor("1", "./b/file"), mOutput);
    EXPECT_EQ(0, Run("sum /proc/self/status"));
    EXPECT_EQ(std::string::npos, mOutput.find("  0  ")) << "files without a size have content too";
    if (::geteuid() != 0) {
        fs::permissions(Native("b"), fs::perms::none);
        EXPECT_EQ(1, Run("sum b"));
        EXPECT_EQ("brindle: b: the directory cannot be read\n", mErrors);
        fs::permissions(Native("b"), fs::perms::all);
    }
}

TEST_F(Sum, ExitStatusTellsWrongUsageAndAFullDisk) {
    for (char const* const words : {"", "nonsense", "sum", "sum --nonsense .", "sum --jobs=0 .",
                                    "sum --jobs=1x .", "sum --jobs= .", "--nonsense"}) {
        EXPECT_EQ(2, Run(words)) << words;
        EXPECT_EQ("", mOutput) << words;
        EXPECT_EQ(0u, mErrors.find("brindle: ")) << words;
    }
    for (char const* const words : {"--help", "sum --help", "--version"}) {
        EXPECT_EQ(0, Run(words)) << words;
        EXPECT_NE("", mOutput) << words;
    }
    EXPECT_EQ(1, Run("--version >/dev/full"));
}

} // namespace

} // namespace brindle::host
