#include "tests/host/Command.h"
#include "tests/host/ListDocument.h"

#include <brindle/filesupport/PlatformByteStreams.h>

namespace brindle::host {

namespace {

using CommandLine = tests::Command;

TEST_F(CommandLine, WrongUsagePointsToTheHelpThatExplainsIt) {
    std::pair<char const*, char const*> const rows[] = {
        {"", "no verb\nTry 'brindle --help'."},
        {"nonsense", "unknown verb 'nonsense'\nTry 'brindle --help'."},
        {"--nonsense", "unknown verb '--nonsense'\nTry 'brindle --help'."},
        {"seal", "seal needs one DIR\nTry 'brindle seal --help'."},
        {"calc --=", "unknown option '--'\nTry 'brindle calc --help'."},
        {"sum -x", "unknown option '-x'\nTry 'brindle sum --help'."},
        {"sum --help=x", "--help takes no value\nTry 'brindle sum --help'."},
        {"sum --jobs", "--jobs needs a value\nTry 'brindle sum --help'."}};
    for (auto const& [words, message] : rows) {
        Expect(words, "", 2, std::string("brindle: ") + message + '\n');
    }
}

TEST_F(CommandLine, AnOptionTakesItsValueFromTheNextWordToo) {
    Fill("a", "123456789");
    std::string const line = "cbf43926  9  a\n";
    Expect("sum --jobs 2 a", line);
    Expect("sum --jobs=2 -- a", line);
    ExpectWrongUsage("sum", {"--jobs -- a"});
}

TEST_F(CommandLine, HelpAndVersionAreResults) {
    for (char const* const words : {"--help", "sum --help", "--version"}) {
        Outcome const outcome = Run(words);
        EXPECT_EQ(outcome.status, 0) << words;
        EXPECT_NE(outcome.output, "") << words;
        EXPECT_EQ(outcome.errors, "") << words;
    }
    ExpectFailures({{"--version >/dev/full", "standard output: No space left on device"}});
}

TEST_F(CommandLine, ControlCharactersReachNoTerminal) {
    std::string const name = "\x1B[31m\xC2\x9B";
    std::string const word = " '" + name + "'";
    std::filesystem::create_directory(Native(name));
    for (std::string const& words :
         {"sum" + word + "/missing", "sum --" + name, name, "calc --" + name, "plist" + word,
          "verify" + word, "pack " + word + " x", "pack /dev/null " + word + "/no/x",
          "seal" + word + "/no", "layout" + word + " 1x1", "time" + word, "guid" + word,
          "sum --jobs=" + name + " x"}) {
        Outcome const outcome = Run(words.front() == '\x1B' ? "'" + words + "'" : words);
        EXPECT_NE(outcome.status, 0) << words;
        EXPECT_EQ(outcome.errors.find('\x1B'), std::string::npos) << outcome.errors;
        EXPECT_EQ(outcome.errors.find('\xC2'), std::string::npos) << outcome.errors;
        EXPECT_NE(outcome.errors.find("u001b["), std::string::npos) << outcome.errors;
    }
}

TEST_F(CommandLine, AStandardStreamThatIsClosedIsAFailureAndNoOtherFile) {
    Fill("file", "1");
    std::filesystem::create_directory(Native("dir"));
    for (char const* const words : {"sum - <&-", "sum - <dir", "pack - out <&-", "sum file >&-"}) {
        Outcome const outcome = Run(words);
        EXPECT_EQ(outcome.status, 1) << words;
        EXPECT_NE(outcome.errors, "") << words;
    }
    EXPECT_EQ(EntryCount(), 2);
    // Whatever is printed stays out of the file that is written.
    EXPECT_EQ(Run("pack file out 0<&- 1>&- 2>&-").status, 0);
    EXPECT_EQ(ContentOf("out"), std::string("\0001", 2));
}

TEST_F(CommandLine, AProgressLineFitsIntoANarrowTerminal) {
    if (std::system("script -qc true /dev/null >/dev/null 2>&1") != 0) {
        GTEST_SKIP() << "this machine has no pseudo-terminals";
    }
    std::filesystem::create_directory(Native("tree"));
    Fill("tree/file", "1");
    std::string const command = "script -qec \"stty cols 12; cd '" + mTemporary.Native() +
                                "'; " BRINDLE_COMMAND " sum tree 2>&1 >sums\" /dev/null >'" +
                                Native("typed") + "'";
    ASSERT_EQ(std::system(command.c_str()), 0);
    EXPECT_EQ(ContentOf("sums"), "83dcefb7  1  tree/file\n");
    EXPECT_EQ(ContentOf("typed"), "\r\x1B[Klooking for\r\x1B[K");
}

TEST_F(CommandLine, ReadsFilesThatAreOpenForWritingElsewhere) {
    std::filesystem::create_directory(Native("tree"));
    Fill("tree/list.xml", tests::ListDocument(""));
    Expect("seal tree");
    filesupport::OPlatformByteStream const list{filesupport::File(At("tree/list.xml"))};
    filesupport::OPlatformByteStream const seal{filesupport::File(At("tree/brindle-seal.xml"))};
    for (char const* const words :
         {"sum tree", "sum tree/list.xml", "seal tree --output=other.xml", "verify tree",
          "plist tree/list.xml", "pack tree/list.xml packed"}) {
        EXPECT_EQ(Run(words).status, 0) << words;
    }
    ExpectFailures(
        {{"pack tree/list.xml tree/list.xml", "tree/list.xml: is open in another program"}});
}

} // namespace

} // namespace brindle::host
