#include "tests/InTemporaryDirectory.h"

#include "platform/Files.h"
#include "platform/Process.h"

#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/filesupport/PlatformByteStreams.h>
#include <brindle/filesupport/SafeSave.h>

#include <atomic>
#include <optional>
#include <thread>
#include <vector>

namespace brindle::filesupport {

namespace {

namespace fs = std::filesystem;

class SafeSaveTest : public tests::InTemporaryDirectory {
protected:
    static void Save(File inTarget, std::string const& inContent) {
        SafeSave save(inTarget);
        auto const temp = save.GetTempFile().FullPath();
        EXPECT_EQ(platform::WriteNewFile(temp, platform::Readers::kOwner, inContent.data(),
                                         inContent.size()),
                  platform::kError_None);
        save.Commit();
        EXPECT_EQ(save.GetTempFile(), inTarget);
        EXPECT_THROW(save.Commit(), rename_file) << "there is nothing more to put in place";
    }
};

TEST_F(SafeSaveTest, TheTempFileHasAFreeNameOfItsOwn) {
    auto const ids = "." + std::to_string(getpid()) + "." + std::to_string(platform::ThreadId());
    fs::create_symlink("nowhere", Native("taken" + ids + "1"));
    std::pair<UTF16String, std::string> const cases[] = {
        {At("Prefs.2.XML"), Native("Prefs.2" + ids + "1.xml")},
        {At("taken"), Native("taken" + ids + "2")},
        {u"alone"_utf16, "./alone" + ids + "1"},
    };
    for (auto const& [path, temp] : cases) {
        File target(path);
        EXPECT_EQ(NativePath(SafeSave(target).GetTempFile()), temp);
    }
    EXPECT_EQ(EntryCount(), 1) << "and nothing is made";
}

TEST_F(SafeSaveTest, ACommitReplacesWhatTheTargetLeadsTo) {
    tests::TemporaryDirectory const elsewhere("/dev/shm"); // usually another file system
    fs::create_directory(Native("dir"));
    for (auto const& place : {Native("dir/file"), elsewhere.Native("file")}) {
        fs::remove(Native("near"));
        fs::create_symlink(place, Native("near"));
        fs::create_symlink("near", Native("far"));
        for (std::string const content : {"made through a dangling link", "replaced", ""}) {
            Save(File(At("far")), content + std::string(content.size() * 1000, 'x'));
            EXPECT_EQ(ContentOf(place), content + std::string(content.size() * 1000, 'x'));
        }
        fs::permissions(place, fs::perms(0640));
        Save(File(At("near")), "new");
        EXPECT_EQ(fs::status(place).permissions(), fs::perms(0640));
        EXPECT_EQ(std::distance(fs::directory_iterator(fs::path(place).parent_path()), {}), 1);
        fs::remove(Native("far"));
    }
    EXPECT_EQ(EntryCount(), 2);
}

TEST_F(SafeSaveTest, WhateverFailsTheOldVersionStays) {
    fs::permissions(mTemporary.Native(), fs::perms::all);
    tests::OrdinaryUser const user;
    tests::TemporaryDirectory const elsewhere("/dev/shm");
    fs::create_symlink(elsewhere.Native("file"), Native("far"));
    std::optional<IPlatformByteStream> reader;
    std::optional<OPlatformByteStream> writer;
    std::pair<char const*, std::function<void(std::string const&)>> const cases[] = {
        {"near", [](auto const& inTemp) { fs::remove(inTemp); }},
        {"near", [&](auto const& inTemp) { fs::rename(Native("link"), inTemp); }},
        {"near", [&](auto const& inTemp) { fs::rename(Native("hard link"), inTemp); }},
        {"near", [&](auto const& inTemp) { writer.emplace(FileFromNative(inTemp)); }},
        {"near", [&](auto const&) { reader.emplace(File(At("near"))); }},
        {"far", [&](auto const&) { reader.emplace(File(At("far"))); }},
        {"near", [&](auto const&) { fs::permissions(Native("near"), fs::perms(0444)); }},
    };
    for (auto const& [name, spoil] : cases) {
        SCOPED_TRACE(&spoil - &cases[0].second);
        File target(At(name)), temp;
        Fill(name, "old");
        fs::create_symlink(name, Native("link"));
        fs::create_hard_link(Native(name), Native("hard link"));
        {
            SafeSave save(target);
            (temp = save.GetTempFile()).Create();
            spoil(NativePath(temp));
            try {
                save.Commit();
                ADD_FAILURE();
            } catch (rename_file const& exception) {
                EXPECT_TRUE(exception.GetFile() == temp &&
                            exception.GetNewName() == target.GetName());
            }
        }
        reader.reset();
        writer.reset();
        fs::remove(Native("link"));
        fs::remove(Native("hard link"));
        EXPECT_EQ(ContentOf(name), "old");
        EXPECT_EQ(EntryCount(), name[0] == 'n' ? 2 : 1) << "the temp file has gone";
        fs::remove(Native("near"));
    }
}

TEST_F(SafeSaveTest, SaversDoNotDisturbEachOtherNorTheirReaders) {
    constexpr int kSavers = 4;
    auto const contentOf = [](char inSaver) { return std::string(5000, inSaver); };
    Fill("file", contentOf('a'));
    std::atomic<int> saving{kSavers};
    auto const saver = [&](char inSaver) {
        for (int round = 0; round < 40; ++round) {
            EXPECT_NO_THROW(Save(File(At("file")), contentOf(inSaver)));
        }
        --saving;
    };
    std::vector<std::thread> savers;
    for (char name = 'a'; name < 'a' + kSavers; ++name) {
        savers.emplace_back(saver, name);
    }
    do {
        auto const content = ContentOf("file");
        EXPECT_EQ(content, contentOf(content.empty() ? 'x' : content[0]));
    } while (saving != 0);
    for (auto& thread : savers) {
        thread.join();
    }
    EXPECT_EQ(EntryCount(), 1);
}

} // namespace

} // namespace brindle::filesupport
