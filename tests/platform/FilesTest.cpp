#include "platform/Files.h"
#include "platform/Directories.h"
#include "platform/FileContent.h"
#include "platform/TemporaryFile.h"

#include "tests/support/FileSizeLimit.h"
#include "tests/support/InTemporaryDirectory.h"

#include <fcntl.h>
#include <set>
#include <sys/stat.h>

namespace brindle::platform {

namespace {

namespace fs = std::filesystem;

class Files : public tests::InTemporaryDirectory {};

TEST_F(Files, EveryNameThatTheKernelHoldsWorks) {
    std::set<std::string> names = {
        "plain",        ".hidden",      "\xFF\xFE",     "line\nbreak", "back\\slash",
        "C:x",          "C:",           "a:b*?\"<>|",   " ",           "\xEF\x81\x9C",
        "\xED\xA0\x80", "\xED\xB2\x80", "\xC3\xA9\xC3", "\\\\?\\x",    std::string(255, 'n'),
    };
    for (auto const& name : names) {
        Fill(name, name);
    }
    DirectoryScan scan(mTemporary.Path());
    DirectoryEntry entry;
    while (scan.Next(entry)) {
        auto const path = mTemporary.Path(entry.name);
        auto const name = NativePath(path).value.substr(Native("").size());
        EXPECT_EQ(names.erase(name), 1U) << name;
        EXPECT_EQ(Inspect(path).value.size, name.size());
        EXPECT_EQ(entry.isHidden, name[0] == '.');
        EXPECT_FALSE(entry.isDirectory);
        EXPECT_FALSE(entry.isSystem);
        EXPECT_FALSE(entry.isLink);
        EXPECT_EQ(DeleteFile(path), kError_None);
    }
    EXPECT_EQ(names.size(), 0U);
    EXPECT_EQ(CreateEmptyFile(At(std::string(256, 'n'))), kError_NameTooLong);
}

TEST_F(Files, EveryKindIsRecognisedAndOnlyRegularFilesAreOpened) {
    Fill("file", "12345");
    fs::create_directory(Native("dir"));
    ASSERT_EQ(mknod(Native("fifo").c_str(), S_IFIFO | 0600, 0), 0);
    ASSERT_EQ(mknod(Native("sock").c_str(), S_IFSOCK | 0600, 0), 0);
    for (std::string const name : {"file", "dir", "fifo", "sock", "none"}) {
        fs::create_symlink(name, Native("to-" + name));
    }
    fs::create_symlink("/dev/null", Native("to-null"));
    fs::create_symlink("circle", Native("circle"));

    struct Case {
        char const* name;
        FileKind kind;
        ErrorCode error = kError_None;
    };
    Case const cases[] = {
        {"to-file", FileKind::kFile},
        {"to-dir", FileKind::kDirectory},
        {"to-fifo", FileKind::kPipe},
        {"sock", FileKind::kSocket},
        {"to-null", FileKind::kDevice},
        {"to-none", FileKind::kOther, kError_FileNotFound},
        {"circle", FileKind::kOther, kError_LinkCircle},
        {"file/x", FileKind::kOther, kError_PathNotFound},
    };
    for (auto const& one : cases) {
        SCOPED_TRACE(one.name);
        auto const path = At(one.name);
        auto const info = Inspect(path);
        EXPECT_EQ(info.error, one.error);
        EXPECT_EQ(info.value.kind, one.kind);
        auto const refusal = one.kind == FileKind::kFile ? kError_None
                             : one.error == kError_None  ? kError_AccessDenied
                                                         : one.error;
        EXPECT_EQ(OpenForReading(path).error, refusal);
        EXPECT_EQ(OpenForWriting(path).error, refusal);
        EXPECT_NE(CreateNewFile(path, Readers::kOwner).error, kError_None) << "also for a link";
        if (refusal == kError_AccessDenied) {
            EXPECT_EQ(CreateEmptyFile(path), refusal);
            EXPECT_EQ(ReplaceContent(path, "x", 1), refusal);
            EXPECT_EQ(AppendContent(path, "x", 1), refusal);
        }
    }
    EXPECT_EQ(ReplaceContent(At("circle"), "x", 1), kError_LinkCircle);
    EXPECT_TRUE(IsSymbolicLink(At("to-dir/")));

    DirectoryScan scan(mTemporary.Path());
    for (DirectoryEntry entry; scan.Next(entry);) {
        auto const name = NativePath(entry.name).value;
        auto const target = name.find("to-") == 0 ? name.substr(3) : name;
        EXPECT_EQ(entry.isSystem, target == "fifo" || target == "sock" || target == "null") << name;
    }
}

TEST_F(Files, TimesAndIdentityAreTheSystems) {
    Fill("a", "");
    fs::create_hard_link(Native("a"), Native("b"));
    // The first second is well known, and so are its ticks.
    std::pair<timespec, std::uint64_t> const cases[] = {
        {{1000000000, 500000000}, 126444736005000000U}, {{-1, 0}, 116444735990000000U}};
    for (auto const& [time, ticks] : cases) {
        timespec const times[] = {time, time};
        ASSERT_EQ(utimensat(AT_FDCWD, Native("a").c_str(), times, 0), 0);
        EXPECT_EQ(Inspect(At("a")).value.modified, ticks);
    }
    auto const a = Inspect(At("a")).value;
    EXPECT_TRUE(a.identity == Inspect(At("b")).value.identity);
    EXPECT_FALSE(a.identity == Inspect(mTemporary.Path()).value.identity);
}

TEST_F(Files, ATemporaryFileTakesNobodysName) {
    Fill("taken", "x");
    fs::create_symlink("nowhere", Native("link"));
    for (auto const* const name : {"taken", "link"}) {
        EXPECT_EQ(TemporaryFile::Create(At(name), Readers::kOwner).error, kError_AlreadyExists);
    }
    EXPECT_EQ(ContentOf("taken"), "x");
    EXPECT_EQ(EntryCount(), 2);
}

TEST_F(Files, MovingNeverReplaces) {
    Fill("a", "a");
    Fill("b", "b");
    fs::create_directory(Native("d"));
    EXPECT_EQ(Move(At("a"), At("b")), kError_AlreadyExists);
    EXPECT_EQ(Move(At("a"), At("none/c")), kError_PathNotFound);
    EXPECT_EQ(Move(At("d"), At("d/e")), kError_InvalidParameter);
    EXPECT_EQ(Move(At("a"), At("c")), kError_None);
    EXPECT_EQ(ContentOf("b") + ContentOf("c"), "ba");
    EXPECT_EQ(EntryCount(""), 3);
}

TEST_F(Files, ReplacingKeepsLinksAndPermissions) {
    fs::permissions(mTemporary.Native(), fs::perms::all);
    tests::OrdinaryUser const user;
    fs::create_directory(Native("dir"));
    Fill("dir/file", "old");
    fs::permissions(Native("dir/file"), fs::perms(0640));
    fs::create_symlink("file", Native("dir/near"));
    fs::create_symlink("dir/near", Native("far"));
    fs::create_symlink(Native("dir/made"), Native("dangling"));

    // The second round is in a directory that may not be listed.
    for (auto const rights : {fs::perms(0700), fs::perms(0300)}) {
        fs::permissions(Native("dir"), rights);
        EXPECT_EQ(ReplaceContent(At("far"), "new", 3), kError_None);
        EXPECT_EQ(AppendContent(At("far"), "er", 2), kError_None);
        EXPECT_EQ(ContentOf("dir/file"), "newer");
        EXPECT_EQ(ReplaceContent(At("dangling"), "made", 4), kError_None);
        EXPECT_EQ(ContentOf("dir/made"), "made");
        EXPECT_TRUE(IsSymbolicLink(At("far")));
        EXPECT_TRUE(IsSymbolicLink(At("dir/near")));
        EXPECT_EQ(fs::status(Native("dir/file")).permissions(), fs::perms(0640));
    }
    fs::permissions(Native("dir/file"), fs::perms(0440));
    EXPECT_EQ(ReplaceContent(At("far"), "x", 1), kError_AccessDenied);
    fs::permissions(Native("dir"), fs::perms(0500));
    EXPECT_EQ(ReplaceContent(At("dir/made"), "x", 1), kError_AccessDenied);
    fs::permissions(Native("dir"), fs::perms(0700));
    EXPECT_EQ(ContentOf("dir/file") + ContentOf("dir/made"), "newermade");
    EXPECT_EQ(EntryCount("dir"), 3);
}

TEST_F(Files, AFullDiskKeepsTheOldFile) {
    Fill("old", std::string(100, 'o'));
    std::string const big(100000, 'b');
    tests::FileSizeLimit const limit(4096);
    for (auto const* const name : {"old", "new"}) {
        EXPECT_EQ(ReplaceContent(At(name), big.data(), big.size()), kError_FileTooLarge);
        EXPECT_EQ(AppendContent(At(name), big.data(), big.size()), kError_FileTooLarge);
    }
    EXPECT_EQ(ContentOf("old"), std::string(100, 'o'));
    EXPECT_EQ(EntryCount(""), 1);
    auto writer = OpenForWriting(At("old"));
    EXPECT_EQ(writer.value.Write(big.data(), big.size()), kError_FileTooLarge);
}

} // namespace

} // namespace brindle::platform
