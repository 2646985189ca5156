#include "tests/support/ChildProcess.h"
#include "tests/support/InTemporaryDirectory.h"

#include "platform/Process.h"

#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/filesupport/PlatformByteStreams.h>
#include <brindle/filesupport/SafeSave.h>
#include <brindle/filesupport/SafeSaveStream.h>
#include <brindle/utility/FileUtils.h>

#include <functional>
#include <optional>
#include <sched.h>

namespace brindle::filesupport {

namespace {

namespace fs = std::filesystem;

class SafeSaveTest : public tests::InTemporaryDirectory {
protected:
    static void Write(SafeSave& ioSave, std::string const& inContent) {
        std::ofstream(NativePath(ioSave.GetTempFile())) << inContent;
    }
};

/// ".", process, ".", thread, as a temp file's name has it.
std::string Ids() {
    return "." + std::to_string(getpid()) + "." + std::to_string(platform::ThreadId());
}

void ExpectCommit(SafeSave& ioSave, File const& inTarget, bool inIsSaved) {
    File const temp = ioSave.GetTempFile();
    try {
        ioSave.Commit();
        EXPECT_TRUE(inIsSaved);
        EXPECT_EQ(ioSave.GetTempFile(), inTarget);
    } catch (rename_file const& exception) {
        EXPECT_FALSE(inIsSaved);
        EXPECT_EQ(exception.GetFile(), temp);
        EXPECT_EQ(exception.GetNewName(), inTarget.GetName());
    }
    EXPECT_THROW(ioSave.Commit(), rename_file) << "again";
}

TEST_F(SafeSaveTest, TheNewVersionTakesThePlaceOrTheOldOneStays) {
    fs::permissions(mTemporary.Native(), fs::perms::all);
    tests::OrdinaryUser const user;
    auto const elsewhere = tests::TemporaryDirectory::OnAnotherFileSystem();
    std::optional<IPlatformByteStream> reader;
    std::optional<OPlatformByteStream> writer;
    struct {
        std::string name;
        bool isSaved;
        /// Gets the paths of what is replaced and of the temp file.
        std::function<void(std::string const&, std::string const&)> prepare;
    } const cases[] = {
        {"replaced", true, [](auto&, auto&) {}},
        {"made", true, [](auto& inPlace, auto&) { fs::remove(inPlace); }},
        {"no temp file", false, [](auto&, auto& inTemp) { fs::remove(inTemp); }},
        {"temp a link", false, [&](auto&, auto& inTemp) { fs::rename(Native("near"), inTemp); }},
        {"temp open", false, [&](auto&, auto& inTemp) { writer.emplace(FileFromNative(inTemp)); }},
        {"read", true, [&](auto& inPlace, auto&) { reader.emplace(FileFromNative(inPlace)); }},
        {"written", false, [&](auto& inPlace, auto&) { writer.emplace(FileFromNative(inPlace)); }},
        {"read-only", false,
         [](auto& inPlace, auto&) { fs::permissions(inPlace, fs::perms(0440)); }},
    };
    std::string const content(50'000, 'n');
    for (auto const& place : {Native("file"), elsewhere.Native("file")}) {
        for (auto const& one : cases) {
            SCOPED_TRACE(place + ": " + one.name);
            std::ofstream(place) << "old";
            fs::permissions(place, fs::perms(0640));
            fs::create_symlink(place, Native("near"));
            fs::create_symlink("near", Native("far.XML"));
            auto const before = EntryCount();
            File target(At("far.XML"));
            {
                SafeSave save(target);
                auto const temp = NativePath(save.GetTempFile());
                EXPECT_EQ(temp, Native("far" + Ids() + "1.xml"));
                std::ofstream(temp) << content;
                one.prepare(place, temp);
                ExpectCommit(save, target, one.isSaved);
            }
            EXPECT_EQ(ContentOf(place), one.isSaved ? content : "old");
            EXPECT_EQ(fs::status(place).permissions() == fs::perms(0640),
                      one.name != "made" && one.name != "read-only");
            EXPECT_EQ(fs::remove(Native("near")), one.name != "temp a link");
            EXPECT_TRUE(fs::remove(Native("far.XML")));
            EXPECT_EQ(EntryCount(), before - 2) << "the temp file has gone";
            reader.reset();
            writer.reset();
            fs::remove(place);
        }
    }
}

TEST_F(SafeSaveTest, TheTempFileStandsBesideTheTarget) {
    std::pair<UTF16String, std::string> const cases[] = {
        {u"alone"_utf16, "./alone" + Ids() + "1"},
        {u"/brindle-test.Xml"_utf16, "/brindle-test" + Ids() + "1.xml"},
        {At("file.B"), Native("file" + Ids() + "1.b")},
    };
    for (auto const& [path, temp] : cases) {
        File target(path);
        SafeSave save(target);
        EXPECT_EQ(EntryCount(), 0) << "nothing is made before somebody asks for it";
        EXPECT_EQ(NativePath(save.GetTempFile()), temp);
    }
    EXPECT_EQ(EntryCount(), 0);
}

TEST_F(SafeSaveTest, EachSaveHasATempFileOfItsOwn) {
    File lower(At("q.xml")), upper(At("q.XML"));
    {
        SafeSave first(lower), second(upper), abandoned(lower), unwritten(lower);
        for (auto* const save : {&first, &second, &abandoned, &unwritten}) {
            save->GetTempFile(); // before any of them is written
        }
        Write(first, "first");
        Write(second, "second");
        Write(abandoned, "abandoned");
        first.Commit();
        second.Commit();
        EXPECT_THROW(unwritten.Commit(), rename_file) << "nobody has written it";
        EXPECT_EQ(ContentOf("q.xml"), "first");
        EXPECT_EQ(ContentOf("q.XML"), "second");
    }
    EXPECT_EQ(EntryCount(), 2);
}

TEST_F(SafeSaveTest, WhoeverWritesTheTempFileMayReplaceIt) {
    Fill("file", "old");
    fs::permissions(Native("file"), fs::perms(0600));
    File target(At("file"));
    {
        SafeSave save(target);
        auto const temp = NativePath(save.GetTempFile());
        utility::FileUtils::SimpleWriteStringToFile(save.GetTempFile().FullPath(), "new"_utf8);
        EXPECT_EQ(fs::status(temp).permissions(), fs::perms(0600)) << "as private as the old one";
        save.Commit();
        EXPECT_EQ(ContentOf("file"), "new");

        SafeSave streamed(target);
        OSafeSaveStream stream(streamed.GetTempFile());
        stream.Put('s');
        stream.Commit();
        streamed.Commit();
        EXPECT_EQ(ContentOf("file"), "s") << "while the stream is still there";

        SafeSave abandoned(target), linked(target), empty(target);
        utility::FileUtils::SimpleWriteStringToFile(abandoned.GetTempFile().FullPath(), "x"_utf8);
        fs::remove(NativePath(linked.GetTempFile()));
        fs::create_hard_link(Native("file"), NativePath(linked.GetTempFile()));
        linked.Commit();
        EXPECT_EQ(ContentOf("file"), "s");
        empty.GetTempFile().Create();
        empty.Commit();
        EXPECT_EQ(ContentOf("file"), "");
    }
    EXPECT_EQ(EntryCount(), 1);
}

TEST_F(SafeSaveTest, ATempFileOfAnotherSaveIsNeitherRemovedNorCommitted) {
    File target(At("file"));
    std::optional<SafeSave> robbed(std::in_place, target);
    File const temp = robbed->GetTempFile();
    temp.Delete();
    SafeSave other(target); // takes the name that is free again
    ASSERT_EQ(other.GetTempFile(), temp);
    Write(other, "other");
    EXPECT_THROW(robbed->Commit(), rename_file);
    robbed.reset();
    other.Commit();
    EXPECT_EQ(ContentOf("file"), "other");
}

TEST_F(SafeSaveTest, SaversWithEqualIdsDoNotShareATempFile) {
    auto const save = [this](char inLetter) {
        for (int round = 0; round < 60; ++round) {
            File target(At("file"));
            SafeSave saving(target);
            Write(saving, std::string(20'000, inLetter));
            if (round % 3 != 0) { // some fail
                EXPECT_NO_THROW(saving.Commit());
            }
            auto const content = ContentOf("file");
            EXPECT_TRUE(content.empty() || content == std::string(20'000, content[0]));
        }
        return HasFailure() ? 1 : 0;
    };
    // Each has the number 1 in a namespace of its own.
    auto const start = [&save](char inLetter) {
        return tests::ChildProcess([&save, inLetter] {
            if (unshare(CLONE_NEWPID) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWPID) != 0) {
                return 2;
            }
            return tests::ChildProcess([&] { return save(inLetter); }).Wait();
        });
    };
    tests::ChildProcess children[] = {start('a'), start('b'), start('c')};
    for (auto& child : children) {
        int const status = child.Wait();
        if (status == 2) {
            GTEST_SKIP() << "no namespaces for this user";
        }
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(EntryCount(), 1);
}

TEST_F(SafeSaveTest, ANameMayBeAsLongAsTheSystemTakesIt) {
    for (std::string const& name :
         {std::string(255, 'a'), std::string(251, 'b') + ".xml", "c." + std::string(253, 'd'),
          std::string(252, 'e') + "\u20AC"}) {
        File target(At(name));
        SafeSave save(target);
        Write(save, "new");
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
        Write(save, "new");
        if (owner == 0) {
            save.Commit();
        } else {
            EXPECT_THROW(save.Commit(), rename_file);
        }
        EXPECT_EQ(ContentOf("file"), owner == 0 ? "new" : "");
    }
}

} // namespace

} // namespace brindle::filesupport
