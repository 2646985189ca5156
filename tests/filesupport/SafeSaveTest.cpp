#include "tests/support/InTemporaryDirectory.h"

#include "platform/Process.h"

#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/filesupport/PlatformByteStreams.h>
#include <brindle/filesupport/SafeSave.h>

#include <optional>
#include <thread>
#include <tuple>
#include <vector>

namespace brindle::filesupport {

namespace {

namespace fs = std::filesystem;

class SafeSaveTest : public tests::InTemporaryDirectory {};

TEST_F(SafeSaveTest, TheNewVersionTakesThePlaceOrTheOldOneStays) {
    fs::permissions(mTemporary.Native(), fs::perms::all);
    tests::OrdinaryUser const user;
    auto const elsewhere = tests::TemporaryDirectory::OnAnotherFileSystem();
    std::optional<IPlatformByteStream> reader;
    std::optional<OPlatformByteStream> writer;
    using Prepare = std::function<void(std::string const& inPlace, std::string const& inTemp)>;
    std::tuple<std::string, bool, Prepare> const cases[] = {
        {"replaced", true, [](auto&, auto&) {}},
        {"made", true, [](auto& inPlace, auto&) { fs::remove(inPlace); }},
        {"no temp file", false, [](auto&, auto& inTemp) { fs::remove(inTemp); }},
        {"a link", false, [&](auto&, auto& inTemp) { fs::rename(Native("near"), inTemp); }},
        {"writer", false, [&](auto&, auto& inTemp) { writer.emplace(FileFromNative(inTemp)); }},
        {"reader", true, [&](auto& inPlace, auto&) { reader.emplace(FileFromNative(inPlace)); }},
        {"target's", false, [&](auto& inPlace, auto&) { writer.emplace(FileFromNative(inPlace)); }},
        {"read-only", false,
         [](auto& inPlace, auto&) { fs::permissions(inPlace, fs::perms(0440)); }},
    };
    auto const ids = "." + std::to_string(getpid()) + "." + std::to_string(platform::ThreadId());
    std::string const content(50'000, 'n');
    for (auto const& place : {Native("file"), elsewhere.Native("file")}) {
        for (auto const& [what, isSaved, prepare] : cases) {
            SCOPED_TRACE(place + ": " + what);
            std::ofstream(place) << "old";
            fs::permissions(place, fs::perms(0640));
            fs::create_symlink(place, Native("near"));
            fs::create_symlink("near", Native("far.XML"));
            auto const before = EntryCount();
            File target(At("far.XML"));
            {
                SafeSave save(target);
                File const temp = save.GetTempFile();
                EXPECT_EQ(NativePath(temp), Native("far" + ids + "1.xml"));
                std::ofstream(NativePath(temp)) << content;
                prepare(place, NativePath(temp));
                try {
                    save.Commit();
                    EXPECT_TRUE(isSaved && save.GetTempFile() == target);
                } catch (rename_file const& exception) {
                    EXPECT_TRUE(!isSaved && exception.GetFile() == temp);
                    EXPECT_EQ(exception.GetNewName(), target.GetName());
                }
                EXPECT_THROW(save.Commit(), rename_file) << "again";
            }
            EXPECT_EQ(ContentOf(place), isSaved ? content : "old");
            EXPECT_EQ(fs::status(place).permissions() == fs::perms(0640),
                      what != "made" && what != "read-only");
            EXPECT_EQ(fs::remove(Native("near")), what != "a link");
            EXPECT_TRUE(fs::remove(Native("far.XML")));
            EXPECT_EQ(EntryCount(), before - 2) << "the temp file has gone";
            reader.reset();
            writer.reset();
            fs::remove(place);
        }
    }
    File alone(u"alone"_utf16);
    EXPECT_EQ(NativePath(SafeSave(alone).GetTempFile()), "./alone" + ids + "1");
}

TEST_F(SafeSaveTest, ANameMayBeAsLongAsTheSystemTakesIt) {
    for (std::string const& name :
         {std::string(255, 'a'), std::string(251, 'b') + ".xml", "c." + std::string(253, 'd'),
          std::string(252, 'e') + "\u20AC"}) {
        File target(At(name));
        SafeSave save(target);
        std::ofstream(NativePath(save.GetTempFile())) << "new";
        save.Commit();
        EXPECT_EQ(ContentOf(name), "new");
    }
}

TEST_F(SafeSaveTest, APlantedLinkIsNotFollowed) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root makes links for others";
    }
    fs::permissions(mTemporary.Native(), fs::perms(01777));
    fs::create_symlink("file", Native("link"));
    File target(At("link"));
    for (uid_t const owner : {65534u, 0u}) {
        ASSERT_EQ(::lchown(Native("link").c_str(), owner, owner), 0);
        SafeSave save(target);
        std::ofstream(NativePath(save.GetTempFile())) << "new";
        try {
            save.Commit();
        } catch (rename_file const&) {
        }
        EXPECT_EQ(ContentOf("file"), owner == 0 ? "new" : "");
    }
}

TEST_F(SafeSaveTest, SaversDoNotDisturbEachOther) {
    Fill("file", "old");
    auto const saveOften = [this] {
        for (int round = 0; round < 40; ++round) {
            File target(At("file"));
            SafeSave save(target);
            std::ofstream(NativePath(save.GetTempFile())) << "new";
            EXPECT_NO_THROW(save.Commit());
        }
    };
    std::vector<std::thread> savers;
    for (int count = 0; count < 4; ++count) {
        savers.emplace_back(saveOften);
    }
    for (auto& saver : savers) {
        EXPECT_NE(ContentOf("file"), "");
        saver.join();
    }
    EXPECT_EQ(EntryCount(), 1);
}

} // namespace

} // namespace brindle::filesupport
