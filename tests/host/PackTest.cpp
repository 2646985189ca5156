#include "tests/host/Command.h"

#include <sys/stat.h>

namespace brindle::host {

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

class Pack : public tests::Command {
protected:
    /// The command says why it fails, and leaves the directory as it was, with the old "out" in it.
    void ExpectNoChange(std::string const& inWords, std::string const& inDiagnostic,
                        std::string const& inBefore = "") const {
        SCOPED_TRACE("brindle " + inWords);
        Fill("out", "old");
        auto const before = EntryCount();
        Outcome const outcome = Run(inWords, inBefore);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.errors, "brindle: " + inDiagnostic + '\n');
        EXPECT_EQ(ContentOf("out"), "old");
        EXPECT_EQ(EntryCount(), before);
    }
};

TEST_F(Pack, GivesBackEveryByteAcrossTheBlocks) {
    std::string mixed;
    for (unsigned i = 0; mixed.size() < 3'000'000; ++i) {
        mixed.append(i % 7 == 0 ? i % 1000 : 1, static_cast<char>(i * i >> 5));
    }
    constexpr std::size_t kBlock = 256 * 1024;
    for (std::string const& content :
         {""s, "x"s, std::string(kBlock, 'x'), mixed.substr(0, kBlock - 1),
          mixed.substr(0, 2 * kBlock), mixed}) {
        Fill("in", content);
        Expect("pack in packed");
        Expect("unpack packed out");
        EXPECT_TRUE(ContentOf("out") == content) << content.size();
    }
    Fill("in", "\x80\0x\377a"s);
    fs::create_symlink("in", Native("link"));
    Expect("unpack in link");
    EXPECT_EQ(ContentOf("in"), "xaa");
    EXPECT_TRUE(fs::is_symlink(Native("link")));
    Expect("pack in in");
    EXPECT_EQ(ContentOf("in"), "\2xaa");
}

TEST_F(Pack, AFailureLeavesTheOldFile) {
    Fill("in", "\2abc\377x\200"s);
    for (std::size_t const whole : {1u, 2u, 3u, 5u}) {
        Fill("cut", ContentOf("in").substr(0, whole));
        ExpectNoChange("unpack cut out", "cut: is not packed, or damaged: it ends inside a packet");
    }
    // This file has no size, and begins with 'L': a packet of 77 literals.
    ExpectNoChange("unpack /proc/sys/kernel/ostype out",
                   "/proc/sys/kernel/ostype: is not packed, or damaged: it ends inside a packet");
    fs::create_directory(Native("dir"));
    ASSERT_EQ(mkfifo(Native("fifo").c_str(), 0600), 0);
    for (std::string const verb : {"pack ", "unpack "}) {
        ExpectNoChange(verb + "missing out", "missing: no such file or directory");
        ExpectNoChange(verb + "dir out", "dir: is a directory");
        ExpectNoChange(verb + "fifo out", "fifo: is no regular file");
        ExpectNoChange(verb + "in dir", "dir: is a directory");
        ExpectNoChange(verb + "in fifo", "fifo: is no regular file");
        ExpectNoChange(verb + "in no/out", "no/out: no such directory");
        ExpectWrongUsage(verb);
        ExpectWrongUsage(verb + "in out more");
    }
    std::string large;
    for (unsigned i = 0; i < 1'000'000; ++i) {
        large += static_cast<char>(i * i >> 3);
    }
    Fill("large", large);
    for (std::string const blocks :
         {"600", "1900"}) { // of 512 bytes; the second is enough for all but the end
        ExpectNoChange("pack large out", "out: cannot be written, the disk may be full",
                       "trap '' XFSZ; ulimit -f " + blocks + "; ");
    }
    // Even if it is killed in the middle, the old file stays.
    Run("--version", "sh -c 'ulimit -c 0; ulimit -f 600; cd " + mTemporary.Native() +
                         " && exec " BRINDLE_COMMAND " pack large out' 2>/dev/null; ");
    EXPECT_EQ(ContentOf("out"), "old");
    Expect("pack large out");
}

} // namespace

} // namespace brindle::host
