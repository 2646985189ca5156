#include "tests/TemporaryDirectory.h"

#include <brindle/filesupport/Aliases.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/FileKind.h>
#include <brindle/filesupport/NativePath.h>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace brindle::filesupport {

namespace {

using tests::TemporaryDirectory;

class FileTest : public testing::Test {
protected:
    File MadeFile(UTF16String const& inName, std::size_t inSize = 0) {
        File const file(mDir, inName);
        std::ofstream(NativePath(file), std::ios::binary) << std::string(inSize, 'x');
        return file;
    }

    TemporaryDirectory mTemporary;
    Dir mDir{mTemporary.Path()};
};

/// Expects an exception of exactly that class, with that key.
template <typename Exception, typename Operation>
void ExpectThrown(Operation inOperation, std::string const& inKey) {
    try {
        inOperation();
        ADD_FAILURE() << "nothing thrown instead of " << inKey;
    } catch (std::exception const& exception) {
        EXPECT_EQ(typeid(Exception), typeid(exception));
        std::string const what = exception.what();
        EXPECT_EQ("$$$/brindle/filesupport/" + inKey, what.substr(0, what.find('=')));
        EXPECT_NE(std::string::npos, what.find("'@0'"));
    }
}

TEST_F(FileTest, CreatesEmptiesMeasuresAndDeletes) {
    File const file(mDir, u"a.txt"_utf16);
    EXPECT_FALSE(file.Exists());
    file.Create();
    EXPECT_TRUE(file.Exists());
    MadeFile(u"a.txt"_utf16, 10);
    for (std::int32_t selector = -1; selector < 8; ++selector) {
        bool const reports = selector == 0 || selector == 2 || selector == 3 || selector == 5;
        EXPECT_EQ(reports ? 10u : 0u, file.Size(static_cast<FileSizeSelector>(selector)));
    }
    file.Create();
    EXPECT_EQ(0u, file.Size(kFileSize_Data));
    file.Delete();
    EXPECT_FALSE(file.Exists());
    EXPECT_EQ(0u, file.Size(kFileSize_Data));
    EXPECT_EQ(0u, File(mTemporary.Path()).Size(kFileSize_Data)) << "a directory has no size";
}

TEST_F(FileTest, FailuresArriveAsTheClassOfTheirCause) {
    File const missing(mDir, u"missing"_utf16);
    File const astray(mDir, u"missing\\x"_utf16);
    File const taken = MadeFile(u"taken"_utf16);
    Dir const missingDir(missing.FullPath()), takenDir(taken.FullPath());
    Dir(mDir, u"full"_utf16).Create();
    Dir(mDir, u"other"_utf16).Create();

    ExpectThrown<create_invalidpath_exception>([&] { astray.Create(); }, "Create/invalidpath");
    ExpectThrown<create_accessdenied_exception>([&] { File(mTemporary.Path()).Create(); },
                                                "Create/accessdenied");
    ExpectThrown<file_delete_exception>([&] { missing.Delete(); }, "Delete");
    ExpectThrown<file_not_found_exception>([&] { missing.Modified(); }, "FileNotFound");
    ExpectThrown<file_exception>([&] { astray.Created(); }, "error");
    ExpectThrown<rename_file>([&] { File(missing).Rename(u"x"_utf16); }, "Rename");
    ExpectThrown<rename_file>([&] { File(taken).Rename(u"full"_utf16); }, "Rename");
    ExpectThrown<dir_not_found_exception>([&] { missingDir.Created(); }, "DirNotFound");
    ExpectThrown<dir_exception>([&] { Dir(astray.FullPath()).Modified(); }, "Dir/error");
    ExpectThrown<dir_exception>([&] { Dir(astray.FullPath()).Create(); }, "Dir/error");
    ExpectThrown<dir_exception>([&] { missingDir.Delete(); }, "Dir/error");
    ExpectThrown<rename_dir>([&] { Dir(missingDir).Rename(u"x"_utf16); }, "DirRename");
    ExpectThrown<rename_dir_already_exists>(
        [&] { Dir(mDir, u"full"_utf16).Rename(u"other"_utf16); }, "DirRename/exists");
    try {
        Dir(mDir, u"full"_utf16).Rename(u"other"_utf16);
    } catch (rename_dir const& exception) {
        EXPECT_EQ(u"other"_utf16, exception.GetNewName());
        EXPECT_EQ(Dir(mDir, u"full"_utf16), exception.GetDir());
    }
}

TEST_F(FileTest, RenamingTakesTheObjectAlong) {
    File file = MadeFile(u"a"_utf16, 3);
    file.Rename(u"b.c"_utf16);
    EXPECT_EQ(File(mDir, u"b.c"_utf16), file);
    EXPECT_EQ(3u, file.Size(kFileSize_Data));
    Dir dir(mDir, u"d"_utf16);
    dir.Create();
    dir.Create(); // what exists is no failure
    dir.Rename(u"e"_utf16);
    EXPECT_EQ(Dir(mDir, u"e"_utf16), dir);
    EXPECT_TRUE(dir.Exists());
    EXPECT_TRUE(File(dir.FullPath()).Exists()) << "a directory counts for a file";
    EXPECT_FALSE(Dir(file.FullPath()).Exists()) << "a file does not count for a directory";
    EXPECT_TRUE(Dir(u"C:\\"_utf16).Exists());
}

TEST_F(FileTest, TimesAreTicksSince1601) {
    File const file = MadeFile(u"a"_utf16);
    timespec const times[2] = {{0, 0}, {1'000'000'000, 123'456'700}};
    ASSERT_EQ(0, utimensat(AT_FDCWD, NativePath(file).c_str(), times, 0));
    EXPECT_EQ(126'444'736'001'234'567u, file.Modified()); // 2001-09-09 01:46:40.1234567
    EXPECT_LE(file.Created(), 200'000'000'000'000'000u);
    EXPECT_GE(Dir(mDir).Created(), file.Modified()) << "the directory is of today";
}

TEST_F(FileTest, KindTellsWhatAStreamMayOpen) {
    std::string const fifo = mTemporary.Native("fifo"), link = mTemporary.Native("link"),
                      dangling = mTemporary.Native("dangling");
    MadeFile(u"file"_utf16);
    ASSERT_EQ(0, mkfifo(fifo.c_str(), 0600));
    ASSERT_EQ(0, symlink("file", link.c_str()));
    ASSERT_EQ(0, symlink("nowhere", dangling.c_str()));
    EXPECT_EQ(FileKind::kPipe, KindOf(FileFromNative(fifo)));
    EXPECT_EQ(FileKind::kRegular, KindOf(FileFromNative(link)));
    EXPECT_EQ(FileKind::kMissing, KindOf(FileFromNative(dangling)));
    EXPECT_EQ(FileKind::kDirectory, KindOf(File(mTemporary.Path())));
    EXPECT_EQ(FileKind::kDevice, KindOf(FileFromNative("/dev/null")));
}

TEST_F(FileTest, DrivesNameDirectories) {
    MadeFile(u"file"_utf16);
    MapVolume('q', mDir);
    EXPECT_TRUE(File(u"Q:\\file"_utf16).Exists());
    EXPECT_EQ(mTemporary.Native("file"), NativePath(File(u"Q:/file"_utf16)));
    MapVolume('Q', Dir());
    EXPECT_FALSE(File(u"Q:\\file"_utf16).Exists());
    EXPECT_EQ("", NativePath(File(u"Q:\\file"_utf16)));
    EXPECT_THROW(MapVolume('C', mDir), dir_exception);
    EXPECT_THROW(MapVolume('q', Dir(mDir, u"missing"_utf16)), dir_exception);
}

TEST_F(FileTest, ShortcutsLeadToFilesAndDirectories) {
    File const target = MadeFile(u"target"_utf16), upper(mDir, u"to file.LNK"_utf16);
    Dir const targetDir(mDir, u"dir"_utf16);
    targetDir.Create();
    File const toDir(mDir, u"to dir.lnk"_utf16);
    CreateShortCut(upper, target);
    CreateShortCut(toDir, targetDir);

    File file;
    Dir dir;
    bool isDir = true;
    EXPECT_TRUE(ResolveIfAlias(upper, file, dir, isDir)) << "the extension counts in any case";
    EXPECT_FALSE(isDir);
    EXPECT_EQ(target, file);
    EXPECT_TRUE(ResolveIfAlias(toDir, file, dir, isDir));
    EXPECT_TRUE(isDir);
    EXPECT_EQ(targetDir, dir);

    File unchanged = toDir;
    ResolveIfAliasFileOnly(unchanged);
    EXPECT_EQ(toDir, unchanged) << "a directory is no file";
    EXPECT_EQ(target, File(mDir, u"to file.LNK"_utf16, true));
    EXPECT_EQ(toDir, File(mDir, u"to dir.lnk"_utf16, true));
    EXPECT_EQ(targetDir, Dir(mDir, u"to dir.lnk"_utf16, true));
    EXPECT_EQ(Dir(mDir, u"to dir.lnk"_utf16), Dir(mDir, u"to dir.lnk"_utf16, false));

    target.Delete();
    EXPECT_FALSE(ResolveIfAlias(upper, file, dir, isDir)) << "a broken shortcut leads nowhere";
    EXPECT_FALSE(ResolveIfAlias(File(mDir, u"none.lnk"_utf16), file, dir, isDir));
    UTF16String path = toDir.FullPath();
    EXPECT_EQ(0, FileUtils::ResolveIT(path, isDir));
    EXPECT_EQ(targetDir.FullPath(), path);
}

} // namespace

} // namespace brindle::filesupport
