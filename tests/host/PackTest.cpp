#include "tests/host/Command.h"

#include <csignal>
#include <cstdio>
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

    static std::string IncompressibleBytes(unsigned inCount) {
        std::string bytes;
        for (unsigned i = 0; i < inCount; ++i) {
            bytes += static_cast<char>(i * i >> 3);
        }
        return bytes;
    }

private:
    tests::TemporaryDirectory mElsewhere;

protected:
    std::string const mPidFile = mElsewhere.Native("pid");
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
        ExpectNoChange(verb + "in dir", "dir: is a directory");
        ExpectNoChange(verb + "in fifo", "fifo: is no regular file");
        ExpectNoChange(verb + "in no/out", "no/out: no such file or directory");
        ExpectWrongUsage(verb);
        ExpectWrongUsage(verb + "in out more");
    }
    Fill("large", IncompressibleBytes(1'000'000));
    for (std::string const blocks :
         {"600", "1900"}) { // of 512 bytes; the second is enough for all but the end
        ExpectNoChange("pack large out", "out: the file becomes too large",
                       "ulimit -f " + blocks + "; ");
    }
    Expect("pack large out");
}

TEST_F(Pack, AnInterruptedRunLeavesNothing) {
    Fill("out", "old");
    std::string const content = IncompressibleBytes(1'000'000);
    for (int const signal : {SIGINT, SIGTERM, SIGHUP, SIGKILL}) {
        std::string const command = "cd '" + mTemporary.Native() + "' && echo $$ >'" + mPidFile +
                                    "' && exec " BRINDLE_COMMAND " pack - out";
        std::FILE* const input = popen(command.c_str(), "w");
        ASSERT_NE(input, nullptr);
        // A pipe holds far less, so the command has read and written most of it when this returns.
        std::fwrite(content.data(), 1, content.size(), input);
        std::fflush(input);
        kill(std::stoi(ContentOf(mPidFile)), signal);
        int const status = pclose(input);
        EXPECT_TRUE(WIFSIGNALED(status)) << signal;
        EXPECT_EQ(ContentOf("out"), "old") << signal;
        EXPECT_EQ(EntryCount(), 1) << signal;
    }
}

TEST_F(Pack, ANewFileIsAsPrivateAsItsSource) {
    Fill("in", "secret");
    auto const modeOf = [this](char const* inName) {
        return static_cast<unsigned>(fs::status(Native(inName)).permissions());
    };
    for (unsigned const mode : {0600u, 0640u, 0644u}) {
        fs::permissions(Native("in"), fs::perms(mode));
        Expect("pack in packed");
        EXPECT_EQ(modeOf("packed"), mode);
        Expect("unpack packed again");
        EXPECT_EQ(modeOf("again"), mode);
        fs::permissions(Native("packed"), fs::perms(0604));
        Expect("pack in packed");
        EXPECT_EQ(modeOf("packed"), 0604u) << "an old file keeps its permissions";
        fs::remove(Native("packed"));
        fs::remove(Native("again"));
    }
}

TEST_F(Pack, ADashIsAStandardStream) {
    Fill("in", "xxxxxxxxab");
    EXPECT_EQ(Run("pack in -").output, "\371x\1ab");
    EXPECT_EQ(Run("pack - packed <in").errors, "");
    EXPECT_EQ(Run("unpack - - <packed").output, "xxxxxxxxab");
    EXPECT_EQ(Run("unpack packed - >/dev/full").errors,
              "brindle: standard output: No space left on device\n");
    EXPECT_FALSE(fs::exists(Native("-")));
    ASSERT_EQ(mkfifo(Native("fifo").c_str(), 0600), 0);
    EXPECT_EQ(Run("pack fifo -", "cat '" + Native("in") + "' >'" + Native("fifo") + "' & ").output,
              "\371x\1ab");
}

} // namespace

} // namespace brindle::host
