#include "tests/host/Command.h"

#include <set>
#include <sys/stat.h>

namespace brindle::host {

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

class Pack : public tests::Command {
protected:
    void ExpectDone(std::string const& inWords) const {
        Outcome const outcome = Run(inWords);
        EXPECT_EQ(0, outcome.status) << inWords;
        EXPECT_EQ("", outcome.output + outcome.errors) << inWords;
    }

    /// The command says why it fails, and leaves the directory as it is, the old "out" included.
    void ExpectFailure(std::string const& inWords, std::string const& inReason,
                       std::string const& inBefore = "") const {
        Fill("out", "old");
        auto const before = Names();
        Outcome const outcome = Run(inWords, inBefore);
        EXPECT_EQ(1, outcome.status) << inWords;
        EXPECT_EQ("brindle: " + inReason + '\n', outcome.errors);
        EXPECT_EQ("old", ContentOf("out")) << inWords;
        EXPECT_EQ(before, Names()) << inWords;
    }

    std::set<std::string> Names() const {
        std::set<std::string> names;
        for (auto const& entry : fs::directory_iterator(mTemporary.Native())) {
            names.insert(entry.path().filename());
        }
        return names;
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
        ExpectDone("pack in packed");
        ExpectDone("unpack packed out");
        EXPECT_TRUE(ContentOf("out") == content) << content.size();
    }
    EXPECT_LT(fs::file_size(Native("packed")), mixed.size() / 2);
    Fill("in", "\x80\0x\377a"s);
    fs::create_symlink("in", Native("link"));
    ExpectDone("unpack in link");
    EXPECT_EQ("xaa", ContentOf("in"));
    EXPECT_TRUE(fs::is_symlink(Native("link")));
    ExpectDone("pack in in");
    EXPECT_EQ("\2xaa", ContentOf("in"));
}

TEST_F(Pack, AFailureLeavesTheOldFile) {
    Fill("in", "\2abc\377x\200"s);
    for (std::size_t const whole : {1u, 2u, 3u, 5u}) {
        Fill("cut", ContentOf("in").substr(0, whole));
        ExpectFailure("unpack cut out", "cut: is not packed, or damaged: it ends inside a packet");
    }
    // The system tells no size of this file, which begins with 'L', so with 77 literals.
    ExpectFailure("unpack /proc/sys/kernel/ostype out",
                  "/proc/sys/kernel/ostype: is not packed, or damaged: it ends inside a packet");
    fs::create_directory(Native("dir"));
    ASSERT_EQ(0, mkfifo(Native("fifo").c_str(), 0600));
    for (std::string const verb : {"pack ", "unpack "}) {
        ExpectFailure(verb + "missing out", "missing: no such file or directory");
        ExpectFailure(verb + "dir out", "dir: is a directory");
        ExpectFailure(verb + "fifo out", "fifo: is no regular file");
        ExpectFailure(verb + "in dir", "dir: is a directory");
        ExpectFailure(verb + "in fifo", "fifo: is no regular file");
        ExpectFailure(verb + "in no/out", "no/out: no such directory");
        ExpectWrongUsage(verb);
        ExpectWrongUsage(verb + "in out more");
    }
    std::string large;
    for (unsigned i = 0; i < 1'000'000; ++i) {
        large += static_cast<char>(i * i >> 3);
    }
    Fill("large", large);
    for (std::string const blocks :
         {"600", "1900"}) { // of 512 bytes, the second for all but the end
        ExpectFailure("pack large out", "out: cannot be written, the disk may be full",
                      "trap '' XFSZ; ulimit -f " + blocks + "; ");
    }
    // Killed in the middle, it leaves what is beside the old file.
    Run("--version", "sh -c 'ulimit -c 0; ulimit -f 600; cd " + mTemporary.Native() +
                         " && exec " BRINDLE_COMMAND " pack large out' 2>/dev/null; ");
    EXPECT_EQ("old", ContentOf("out"));
    ExpectDone("pack large out");
}

} // namespace

} // namespace brindle::host
