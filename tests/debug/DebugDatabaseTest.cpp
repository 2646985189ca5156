#include <brindle/debug/DebugDatabase.h>

#include "tests/support/InPreferences.h"
#include "tests/support/InThreads.h"

#include <brindle/filesupport/ByteStream.h>
#include <brindle/filesupport/FileExceptions.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <sys/stat.h>

namespace brindle::debug {

namespace {

using tests::AsUTF8;
using tests::InProcess;
using tests::Narrow;

std::string const kFile = "Debug Database.txt";

using DebugDatabaseFile = tests::InPreferences;

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
    std::pair<std::string, char const*> const cases[] = {
        {"", ""},
        {"k\tv\nlost\tw", "k=v;"},
        {"k\tv\tw\n", "k=v\tw;"},
        {"no tab\nk\tv\n", "no tab\nk=v;"},
        {"k\tv\nl\tw\0\nm\tx\n"s, "k=v;"},
        {"\0k\tv\n"s, ""},
        {"k\tv\nk\tw\n", "k=w;"},
        {"\t\n", "=;"},
        {"b\t\xFF\r\na\t1\n\x80\t2\n", "a=1;b=\xFF\r;\x80=2;"},
        {"k\tv\n" + std::string(100'000'000, 'x'), "k=v;"},
    };
    for (auto const& [content, listing] : cases) {
        Fill(Preference(kFile), content);
        EXPECT_EQ(InProcess(Listing), listing) << content.substr(0, 99);
    }
}

TEST_F(DebugDatabaseFile, IsWrittenBySetEntryAlone) {
    auto const change = [this] {
        DebugDatabase::Instance().GetEntry("b"_utf8, "default"_utf8);
        std::string text = ContentOf(Preference(kFile));
        Set("a", "1 2\t3");
        DebugDatabase::Instance().Clear();
        text += Listing() + ContentOf(Preference(kFile));
        DebugDatabase::SetDisableFileWrites(true);
        Set("c", "in memory");
        return text + Listing() + (DebugDatabase::GetDisableFileWrites() ? "disabled" : "");
    };
    EXPECT_EQ(InProcess(change), "a\t1 2\t3\nb\tdefault\nc=in memory;disabled");
    EXPECT_EQ(InProcess(Listing), "a=1 2\t3;b=default;") << "cleared entries come back";
    EXPECT_EQ(EntryCount(mDirectory), 1) << "nothing is left beside the file";
}

/// What is thrown by opening it twice and by a change, and what is kept all the same.
std::string Use() {
    std::string text;
    for (int call = 0; call < 3; ++call) {
        try {
            call < 2 ? static_cast<void>(DebugDatabase::Instance()) : Set("k", "v");
        } catch (filesupport::io_error const&) {
            text += "io_error ";
        } catch (filesupport::dir_exception const&) {
            text += "dir_exception ";
        }
    }
    return text + Listing();
}

TEST_F(DebugDatabaseFile, ThatCannotBeReadIsReportedOnceAndNotReplaced) {
    auto const file = Native(Preference(kFile));
    std::filesystem::create_directory(file);
    EXPECT_EQ(InProcess(Use), "io_error k=v;") << "a directory";
    std::filesystem::remove(file);
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(InProcess(Use), "io_error k=v;") << "a FIFO";
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
    auto const useAsOrdinaryUser = [] {
        tests::OrdinaryUser const user;
        return Use();
    };
    EXPECT_EQ(InProcess(useAsOrdinaryUser), "io_error k=v;") << "not readable";
    EXPECT_EQ(ContentOf(Preference(kFile)), "old\tvalue\n");

    auto const parent = std::filesystem::path(mDirectory).parent_path();
    std::filesystem::remove_all(Native(parent));
    Fill(parent, "a file in its place");
    EXPECT_EQ(InProcess(Use), "dir_exception dir_exception k=v;");
}

TEST_F(DebugDatabaseFile, TakesEntriesFromManyThreads) {
    tests::ChildProcess([] {
        tests::InThreads(4, [](unsigned inThread) {
            for (unsigned round = 0; round < 10; ++round) {
                Set(std::to_string(round * 4 + inThread), "v");
                Listing();
            }
        });
        return 0;
    }).Wait();
    auto const content = ContentOf(Preference(kFile));
    EXPECT_EQ(std::count(content.begin(), content.end(), '\n'), 40) << content;
}

} // namespace

} // namespace brindle::debug
