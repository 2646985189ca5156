#include <brindle/debug/DebugDatabase.h>

#include "tests/debug/InPreferences.h"
#include "tests/support/InThreads.h"

#include <brindle/filesupport/ByteStream.h>
#include <brindle/filesupport/FileExceptions.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <sys/stat.h>

namespace brindle::debug {

namespace {

using tests::AsUTF8;
using tests::InProcess;
using tests::Narrow;

std::string const kFile = "Debug Database.txt";

class DebugDatabaseFile : public tests::InPreferences {};

/// "key=value;" for each entry.
std::string Listing() {
    std::list<UTF8String> keys;
    DebugDatabase::Instance().GetDebugKeys(keys);
    std::string listing;
    for (auto const& key : keys) {
        listing += Narrow(key) + '=' + Narrow(DebugDatabase::Instance().GetEntry(key, {})) + ';';
    }
    return listing;
}

void Set(std::string const& inKey, std::string const& inValue) {
    DebugDatabase::Instance().SetEntry(AsUTF8(inKey), AsUTF8(inValue));
}

TEST_F(DebugDatabaseFile, IsReadLineByLine) {
    using namespace std::string_literals;
    struct Case {
        char const* name;
        std::string content;
        char const* listing;
    } const cases[] = {
        {"empty", "", ""},
        {"one entry", "k\tv\n", "k=v;"},
        {"no last line feed", "k\tv\nlost\tw", "k=v;"},
        {"the key ends at the first tab", "k\tv\tw\n", "k=v\tw;"},
        {"a line without a tab runs on", "no tab\nk\tv\n", "no tab\nk=v;"},
        {"text behind a NUL", "k\tv\nl\tw\0\nm\tx\n"s, "k=v;"},
        {"a NUL in front", "\0k\tv\n"s, ""},
        {"the last of two lines", "k\tv\nk\tw\n", "k=w;"},
        {"empty key and value", "\t\n", "=;"},
        {"in the order of the bytes", "b\t\xFF\r\na\t1\n\x80\t2\n", "a=1;b=\xFF\r;\x80=2;"},
    };
    for (auto const& each : cases) {
        SCOPED_TRACE(each.name);
        Fill(Preference(kFile), each.content);
        EXPECT_EQ(InProcess(Listing), each.listing);
    }
    std::string const noTab(100'000'000, 'x');
    Fill(Preference(kFile), "k\tv\n" + noTab);
    EXPECT_EQ(InProcess(Listing), "k=v;") << "100 MB without a tab";
}

TEST_F(DebugDatabaseFile, IsWrittenBySetEntryAlone) {
    EXPECT_EQ(InProcess([] {
                  auto& database = DebugDatabase::Instance();
                  bool const wasThere = database.HasEntry("a"_utf8);
                  auto const value = Narrow(database.GetEntry("a"_utf8, "b"_utf8));
                  return value + std::to_string(wasThere) +
                         std::to_string(database.HasEntry("a"_utf8)) +
                         Narrow(database.GetEntry("a"_utf8, DebugDatabase::sFalseText));
              }),
              "b01b");
    EXPECT_FALSE(std::filesystem::exists(Native(Preference(kFile))));
    EXPECT_EQ(InProcess([this] {
                  DebugDatabase::Instance().GetEntry("b"_utf8, "default"_utf8);
                  Set("a", "1 2\t3");
                  DebugDatabase::Instance().Clear();
                  std::string const listing = Listing() + ContentOf(Preference(kFile));
                  DebugDatabase::SetDisableFileWrites(true);
                  Set("c", "in memory");
                  return listing + Listing() +
                         std::to_string(DebugDatabase::GetDisableFileWrites());
              }),
              "a\t1 2\t3\nb\tdefault\nc=in memory;1");
    EXPECT_EQ(InProcess(Listing), "a=1 2\t3;b=default;") << "cleared entries come back";
    EXPECT_EQ(EntryCount(mDirectory), 1) << "nothing is left beside the file";
}

std::string InstanceThrows() {
    try {
        DebugDatabase::Instance();
        return "";
    } catch (filesupport::io_error const&) {
        return "io_error ";
    } catch (filesupport::dir_exception const&) {
        return "dir_exception ";
    }
}

TEST_F(DebugDatabaseFile, ThatCannotBeReadIsReportedOnceAndNotReplaced) {
    auto const work = [] {
        auto const first = InstanceThrows();
        auto const second = InstanceThrows();
        Set("k", "v");
        return first + second + Listing();
    };
    auto const file = Native(Preference(kFile));
    std::filesystem::create_directory(file);
    EXPECT_EQ(InProcess(work), "io_error k=v;") << "a directory";
    std::filesystem::remove(file);
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(InProcess(work), "io_error k=v;") << "a FIFO";
    std::filesystem::remove(file);
    Fill(Preference(kFile), "old\tvalue\n");
    ASSERT_EQ(::truncate(file.c_str(), 300'000'000), 0);
    EXPECT_EQ(InProcess(Listing), "old=value;") << "what follows the NUL is not even read";
    Fill(Preference(kFile), "old\tvalue\n");
    for (std::filesystem::path level = file; level != mTemporary.Native();) {
        level = level.parent_path();
        std::filesystem::permissions(level, std::filesystem::perms::all);
    }
    ASSERT_EQ(::chmod(file.c_str(), 0222), 0);
    auto const asUser = [&] {
        tests::OrdinaryUser const user;
        return work();
    };
    EXPECT_EQ(InProcess(asUser), "io_error k=v;") << "not readable";
    EXPECT_EQ(ContentOf(Preference(kFile)), "old\tvalue\n");
}

TEST_F(DebugDatabaseFile, ThatHasNoDirectoryRaises) {
    auto const parent = std::filesystem::path(mDirectory).parent_path();
    std::filesystem::remove_all(Native(parent));
    Fill(parent, "a file in its place");
    EXPECT_EQ(InProcess([] {
                  std::string text = InstanceThrows() + InstanceThrows();
                  try {
                      Set("k", "v");
                  } catch (filesupport::dir_exception const&) {
                      text += "not saved ";
                  }
                  return text + Listing();
              }),
              "dir_exception not saved k=v;");
}

TEST_F(DebugDatabaseFile, TakesEntriesFromManyThreads) {
    auto const keyOf = [](unsigned inThread, int inRound) {
        return std::to_string(inThread) + '.' + std::to_string(inRound);
    };
    EXPECT_EQ(InProcess([&] {
                  tests::InThreads(4, [&](unsigned inThread) {
                      for (int round = 0; round < 10; ++round) {
                          DebugDatabase::Instance().GetEntry("assert.enabled"_utf8,
                                                             DebugDatabase::sFalseText);
                          Set(keyOf(inThread, round), "v");
                          Listing();
                      }
                  });
                  return std::string();
              }),
              "");
    std::string expected;
    for (unsigned thread = 0; thread < 4; ++thread) {
        for (int round = 0; round < 10; ++round) {
            expected += keyOf(thread, round) + "\tv\n";
        }
    }
    EXPECT_EQ(ContentOf(Preference(kFile)), expected + "assert.enabled\tfalse\n");
}

} // namespace

} // namespace brindle::debug
