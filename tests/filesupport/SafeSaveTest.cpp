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
    std::ptrdiff_t EntryCount() const {
        return std::distance(fs::directory_iterator(mTemporary.Native()), {});
    }

    static void Save(File inTarget, std::string const& inContent) {
        SafeSave save(inTarget);
        ASSERT_EQ(platform::WriteNewFile(save.GetTempFile().FullPath(), platform::Readers::kOwner,
                                         inContent.data(), inContent.size()),
                  platform::kError_None);
        save.Commit();
        EXPECT_EQ(save.GetTempFile(), inTarget);
        EXPECT_THROW(save.Commit(), rename_file) << "there is nothing more to put in place";
    }
};

TEST_F(SafeSaveTest, TheTempFileHasAFreeNameOfItsOwn) {
    auto const ids =
        "." + std::to_string(platform::ProcessId()) + "." + std::to_string(platform::ThreadId());
    auto const tempName = [](UTF16String const& inTarget) {
        File target(inTarget);
        return NativePath(SafeSave(target).GetTempFile());
    };
    fs::create_symlink("nowhere", Native("taken" + ids + "1"));
    EXPECT_EQ(tempName(At("Prefs.2.XML")), Native("Prefs.2" + ids + "1.xml"));
    EXPECT_EQ(tempName(At("taken")), Native("taken" + ids + "2"));
    EXPECT_EQ(tempName(u"alone.xml"_utf16), "./alone.xml" + ids + "1") << "beside its target";
    EXPECT_EQ(EntryCount(), 1) << "and nothing is made";
}

TEST_F(SafeSaveTest, ACommitReplacesWhatTheTargetLeadsTo) {
    fs::create_directory(Native("dir"));
    Fill("dir/file", "old");
    fs::permissions(Native("dir/file"), fs::perms(0640));
    fs::create_symlink("dir/file", Native("near"));
    fs::create_symlink(Native("near"), Native("far"));
    fs::create_symlink("dir/made", Native("dangling"));
    for (std::string const name : {"dir/file", "near", "far"}) {
        Save(File(At(name)), name);
        EXPECT_EQ(ContentOf("dir/file"), name);
        EXPECT_EQ(fs::status(Native("dir/file")).permissions(), fs::perms(0640));
    }
    Save(File(At("dangling")), "made");
    Save(File(At("dir/fresh")), "fresh");
    EXPECT_EQ(ContentOf("dir/made") + ContentOf("dir/fresh"), "madefresh");
    EXPECT_TRUE(fs::is_symlink(Native("far")) && fs::is_symlink(Native("dangling")));
    EXPECT_EQ(EntryCount(), 4);
}

TEST_F(SafeSaveTest, ALinkMayLeadToAnotherFileSystem) {
    tests::TemporaryDirectory const elsewhere("/dev/shm");
    auto const there = elsewhere.Native("file");
    if (platform::Inspect(elsewhere.Path()).value.identity.device ==
        platform::Inspect(mTemporary.Path()).value.identity.device) {
        GTEST_SKIP() << "one file system";
    }
    fs::create_symlink(there, Native("link"));
    std::string const big(100'000, 'b');
    for (auto const& content : {std::string("small"), big, std::string()}) {
        Save(File(At("link")), content);
        EXPECT_EQ(ContentOf(there), content);
        EXPECT_EQ(fs::status(there).permissions(), fs::perms(0600));
    }
    IPlatformByteStream const reader{File(elsewhere.Path(u"file"_utf16))};
    EXPECT_THROW(Save(File(At("link")), "new"), rename_file);
    EXPECT_EQ(EntryCount(), 1);
    EXPECT_EQ(std::distance(fs::directory_iterator(elsewhere.Native()), {}), 1);
}

TEST_F(SafeSaveTest, WhateverFailsTheOldVersionStays) {
    fs::permissions(mTemporary.Native(), fs::perms::all);
    tests::OrdinaryUser const user;
    std::optional<IPlatformByteStream> reader;
    std::optional<OPlatformByteStream> writer;
    struct Case {
        char const* name;
        std::function<void(File const& inTemp)> prepare;
        std::ptrdiff_t leftOver = 0;
    };
    Case const cases[] = {
        {"there is no temp file", [](File const& inTemp) { inTemp.Delete(); }},
        {"it is a link",
         [&](File const& inTemp) {
             inTemp.Delete();
             fs::create_symlink("file", NativePath(inTemp));
         }},
        {"it is the target",
         [&](File const& inTemp) {
             inTemp.Delete();
             fs::create_hard_link(Native("file"), NativePath(inTemp));
         }},
        {"it is a directory",
         [](File const& inTemp) {
             inTemp.Delete();
             fs::create_directory(NativePath(inTemp));
         },
         1},
        {"it is being written", [&](File const& inTemp) { writer.emplace(inTemp); }},
        {"the target is being read", [&](File const&) { reader.emplace(File(At("file"))); }},
        {"the target may not be written",
         [&](File const&) { fs::permissions(Native("file"), fs::perms(0444)); }},
        {"the target is none",
         [&](File const&) {
             fs::rename(Native("file"), Native("old"));
             fs::create_directory(Native("file"));
         },
         1},
    };
    for (auto const& one : cases) {
        SCOPED_TRACE(one.name);
        Fill("file", "old");
        auto const before = EntryCount();
        File target(At("file")), temp;
        {
            SafeSave save(target);
            temp = save.GetTempFile();
            temp.Create();
            one.prepare(temp);
            try {
                save.Commit();
                ADD_FAILURE();
            } catch (rename_file const& exception) {
                EXPECT_EQ(exception.GetFile(), temp);
                EXPECT_EQ(exception.GetNewName(), u"file"_utf16);
            }
            EXPECT_EQ(save.GetTempFile(), temp);
        }
        reader.reset();
        writer.reset();
        EXPECT_EQ(EntryCount(), before + one.leftOver);
        EXPECT_EQ(ContentOf(fs::exists(Native("old")) ? "old" : "file"), "old");
        fs::remove(NativePath(temp));
        fs::permissions(Native("file"), fs::perms(0744));
    }
}

TEST_F(SafeSaveTest, SaversDoNotDisturbEachOtherNorTheirReaders) {
    constexpr int kSavers = 4, kRounds = 40;
    auto const contentOf = [](int inSaver) {
        return std::string(5000, static_cast<char>('a' + inSaver));
    };
    File const target(At("file"));
    Fill("file", contentOf(0));
    std::atomic<int> saving{kSavers};
    std::vector<std::thread> savers;
    for (int saver = 0; saver < kSavers; ++saver) {
        savers.emplace_back([&, saver] {
            for (int round = 0; round < kRounds; ++round) {
                EXPECT_NO_THROW(Save(target, contentOf(saver)));
            }
            --saving;
        });
    }
    do {
        auto const content = ContentOf("file");
        EXPECT_EQ(content, content.empty() ? "" : contentOf(content[0] - 'a'));
        EXPECT_FALSE(content.empty());
    } while (saving != 0);
    for (auto& saver : savers) {
        saver.join();
    }
    EXPECT_EQ(EntryCount(), 1);
}

} // namespace

} // namespace brindle::filesupport
