#include "tests/host/Command.h"
#include "tests/support/BitwiseCRC.h"
#include "tests/support/Text.h"

#include <map>
#include <sys/stat.h>

namespace brindle::host {

namespace {

namespace fs = std::filesystem;

/// What the names of these tests contain that is not printed as it is; the backslash comes first.
std::pair<std::string, std::string> const kEscapes[] = {
    {"\\", "\\\\"},          {"\n", "\\n"},
    {"\r", "\\r"},           {"\x1B", "\\u001b"},
    {"\xC2\x9B", "\\u009b"}, {"\xFF\xC3 ", "\\xff\\xc3 "},
    {"\x9B[", "\\x9b["},     {"\xED\xA0\x80", "\\xed\\xa0\\x80"}};

/// The line that `sum` should write for a file, by an independent computation.
std::string LineFor(std::string const& inContent, std::string const& inPath) {
    std::uint32_t const crc = tests::BitwiseCRC(tests::Bytes(inContent), inContent.size());
    std::string name = inPath;
    for (auto const& [raw, escaped] : kEscapes) {
        for (std::size_t i = 0; (i = name.find(raw, i)) != std::string::npos; i += escaped.size()) {
            name.replace(i, raw.size(), escaped);
        }
    }
    char numbers[32];
    std::snprintf(numbers, sizeof numbers, "%08x  %zu  ", crc, inContent.size());
    return (name != inPath ? "\\" : "") + std::string(numbers) + name + "\n";
}

class Sum : public tests::Command {
protected:
    /// Makes a file, and remembers the line that is expected for it.
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

    std::map<std::string, std::string> mLines; // by path, which is the order of the output
};

TEST_F(Sum, SumsFilesOfEveryNameAndSkipsWhatIsNoFile) {
    std::string large;
    for (unsigned i = 0; i < 400'000; ++i) {
        large += static_cast<char>(i * i >> 3);
    }
    for (std::string const name :
         {"plain", "sub/one", "sub.one", "sub/deeper/two", "new\nline", "back\\slash",
          "return\rhere", "escape \x1B[2J", "C1 \xC2\x9B[2J", "raw C1 \x9B[2J",
          "not \xFF\xC3 UTF-8 \xED\xA0\x80", "U+F05C \xEF\x81\x9C", ".hidden", " blanks ",
          "-dash"}) {
        MakeFile(name, "content of " + name);
    }
    MakeFile("empty", "");
    MakeFile("large", large);
    fs::create_symlink("/dev/null", Native("device"));
    fs::create_symlink("plain", Native("link"));
    mLines[Native("link")] = LineFor("content of plain", Native("link"));
    fs::create_directory_symlink("..", Native("sub/circle"));
    fs::create_symlink("nowhere", Native("dangling"));
    ASSERT_EQ(mknod(Native("fifo").c_str(), S_IFIFO | 0600, 0), 0);
    ASSERT_EQ(mknod(Native("socket").c_str(), S_IFSOCK | 0600, 0), 0);

    Outcome const outcome = Run("sum --jobs=2 '" + mTemporary.Native() + "'");
    EXPECT_EQ(outcome.status, 1) << "not all could be summed";
    EXPECT_EQ(outcome.output, ExpectedLines());
    std::string const diagnostic = "brindle: " + Native("");
    EXPECT_EQ(outcome.errors, diagnostic + "dangling: no such file or directory\n" + diagnostic +
                                  "device: skipped, it is a device\n" + diagnostic +
                                  "fifo: skipped, it is a FIFO\n" + diagnostic +
                                  "socket: skipped, it is a socket\n");
}

TEST_F(Sum, TakesFilesAndDirectoriesAndSortsThemTogether) {
    MakeFile("b/file", "1");
    MakeFile("a", "2");
    MakeFile("--x", "3");
    Expect("sum b a -- --x missing",
           LineFor("3", "--x") + LineFor("2", "a") + LineFor("1", "b/file"), 1,
           "brindle: missing: no such file or directory\n");
    Expect("sum ./b/", LineFor("1", "./b/file"));
    EXPECT_EQ(Run("sum /proc/self/status").output.find("  0  "), std::string::npos)
        << "files without a size have content too";
}

TEST_F(Sum, NamesTheReasonThatTheSystemGives) {
    MakeFile("closed/file", "1");
    MakeFile("listed/file", "1");
    MakeFile("secret", "1");
    fs::create_symlink("loop", Native("loop"));
    fs::permissions(Native("closed"), fs::perms::none);
    fs::permissions(Native("listed"), fs::perms::owner_read);
    fs::permissions(Native("secret"), fs::perms::none);
    Outcome const outcome = RunUnprivileged(
        "sum closed closed/file listed loop secret secret/below " + std::string(300, 'x'));
    fs::permissions(Native("closed"), fs::perms::all);
    fs::permissions(Native("listed"), fs::perms::all);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "brindle: closed: the directory cannot be read\n"
                              "brindle: closed/file: permission denied\n"
                              "brindle: listed/file: permission denied\n"
                              "brindle: loop: symbolic links lead in a circle\n"
                              "brindle: secret: permission denied\n"
                              "brindle: secret/below: no such file or directory\n"
                              "brindle: " +
                                  std::string(300, 'x') + ": the name is too long\n");
}

TEST_F(Sum, ReadsAnyKindOfFileThatIsNamed) {
    Fill("file", "123456789");
    ASSERT_EQ(mkfifo(Native("fifo").c_str(), 0600), 0);
    std::string const sum = "cbf43926  9  ";
    EXPECT_EQ(Run("sum fifo", "cat '" + Native("file") + "' >'" + Native("fifo") + "' & ").output,
              sum + "fifo\n");
    EXPECT_EQ(Run("sum - <file").output, sum + "-\n");
    EXPECT_EQ(Run("sum /dev/null").output, "00000000  0  /dev/null\n");
}

TEST_F(Sum, PrintsTheSameWithAnyNumberOfJobs) {
    for (int i = 0; i < 2000;
         ++i) { // more than are computed ahead, and small files overtake large ones
        MakeFile("d" + std::to_string(i % 7) + "/\n" + std::to_string(i),
                 std::string(i % 97 == 0 ? 100'000u : 1u, static_cast<char>(i)));
        fs::create_symlink(i % 2 != 0 ? "nowhere" : "/dev/null", Native("a" + std::to_string(i)));
    }
    Outcome const alone = Run("sum --jobs=1 '" + mTemporary.Native() + "'");
    EXPECT_EQ(alone.output, ExpectedLines());
    for (char const* const jobs : {"", "--jobs=2", "--jobs=1024"}) {
        Outcome const outcome = Run(std::string("sum ") + jobs + " '" + mTemporary.Native() + "'");
        EXPECT_EQ(outcome.output, alone.output) << jobs;
        EXPECT_EQ(outcome.errors, alone.errors) << jobs;
        EXPECT_EQ(outcome.status, 1) << jobs;
    }
    Outcome const refused = Run("sum --jobs=1024 d0", "ulimit -S -s 500000000; ");
    EXPECT_EQ(refused.errors, "brindle: Not enough thread resources.\n") << "stacks of half a TB";
    EXPECT_EQ(refused.output, Run("sum --jobs=2 d0").output);
    EXPECT_EQ(refused.status, 0);
}

TEST_F(Sum, EndsWhenItsOutputIsLost) {
    Fill("file", "1");
    for (int i = 0; i < 2000; ++i) { // more lines than are buffered, then what is reported
        fs::create_symlink(i < 1000 ? "file" : "/dev/null", Native(std::to_string(10'000 + i)));
    }
    EXPECT_EQ(Run("sum . >/dev/full").errors,
              "brindle: standard output: No space left on device\n");
}

TEST_F(Sum, WrongUsageSaysSo) {
    for (char const* const words : {"sum", "sum --nonsense .", "sum --jobs=0 .",
                                    "sum --jobs=1025 .", "sum --jobs=1x .", "sum --jobs= ."}) {
        ExpectWrongUsage(words);
    }
}

} // namespace

} // namespace brindle::host
