#include "tests/support/InTemporaryDirectory.h"

#include <brindle/filesupport/Aliases.h>
#include <brindle/filesupport/DirectoryIterators.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/FileKind.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/filesupport/PlatformByteStreams.h>
#include <brindle/filesupport/SafeSaveStream.h>
#include <brindle/filesupport/VolumeSpace.h>

#include <functional>
#include <typeinfo>

namespace brindle::filesupport {

namespace {

using Operation = config::FileOperation;
using Cause = utility::SystemError;

class FileTest : public tests::InTemporaryDirectory {
protected:
    File FileAt(std::string const& inName) const { return File(At(inName)); }
    Dir DirAt(std::string const& inName) const { return Dir(At(inName)); }

    Dir mDir{mTemporary.Path()};
};

TEST_F(FileTest, CreatesEmptiesMeasuresAndDeletes) {
    File const file = FileAt("a.txt");
    file.Create();
    EXPECT_TRUE(file.Exists());
    Fill("a.txt", "0123456789");
    for (std::int32_t selector = -1; selector < 8; ++selector) {
        bool const reports = selector == 0 || selector == 2 || selector == 3 || selector == 5;
        EXPECT_EQ(file.Size(static_cast<FileSizeSelector>(selector)), reports ? 10u : 0u);
    }
    EXPECT_GE(file.Modified(), file.Created());
    file.Create();
    EXPECT_EQ(file.Size(kFileSize_Data), 0u);
    file.Delete();
    EXPECT_FALSE(file.Exists());
    EXPECT_EQ(File(mTemporary.Path()).Size(kFileSize_Data), 0u) << "a directory has no size";
}

TEST_F(FileTest, FailuresArriveAsTheClassOfTheirCause) {
    Fill("taken", "");
    DirAt("full").Create();
    DirAt("other").Create();
    File const missing = FileAt("missing"), astray = FileAt("missing/x");
    Dir const missingDir = DirAt("missing"), astrayDir = DirAt("missing/x");
    UTF16String const other = u"other"_utf16;
    struct {
        std::type_info const& type;
        std::string key;
        Operation operation;
        Cause cause;
        std::function<void()> act;
    } const cases[] = {
        {typeid(create_invalidpath_exception), "Create/invalidpath", Operation::kCreate,
         Cause::kPathNotFound, [&] { astray.Create(); }},
        {typeid(create_accessdenied_exception), "Create/accessdenied", Operation::kCreate,
         Cause::kAccessDenied, [&] { FileAt("full").Create(); }},
        {typeid(file_delete_exception), "Delete", Operation::kDelete, Cause::kFileNotFound,
         [&] { missing.Delete(); }},
        {typeid(file_not_found_exception), "FileNotFound", Operation::kInspect,
         Cause::kFileNotFound, [&] { missing.Modified(); }},
        {typeid(file_exception), "error", Operation::kInspect, Cause::kPathNotFound,
         [&] { astray.Created(); }},
        {typeid(rename_file), "Rename", Operation::kRename, Cause::kAlreadyExists,
         [&] { FileAt("taken").Rename(other); }},
        {typeid(dir_not_found_exception), "DirNotFound", Operation::kInspect, Cause::kFileNotFound,
         [&] { missingDir.Created(); }},
        {typeid(dir_exception), "Dir/error", Operation::kInspect, Cause::kPathNotFound,
         [&] { astrayDir.Modified(); }},
        {typeid(dir_exception), "Dir/error", Operation::kCreate, Cause::kPathNotFound,
         [&] { astrayDir.Create(); }},
        {typeid(dir_exception), "Dir/error", Operation::kDelete, Cause::kFileNotFound,
         [&] { missingDir.Delete(); }},
        {typeid(rename_dir), "DirRename", Operation::kRename, Cause::kFileNotFound,
         [&] { Dir(missingDir).Rename(other); }},
        {typeid(rename_dir_already_exists), "DirRename/exists", Operation::kRename,
         Cause::kAlreadyExists, [&] { DirAt("full").Rename(other); }},
    };
    for (auto const& row : cases) {
        SCOPED_TRACE(row.key);
        try {
            row.act();
            ADD_FAILURE() << "nothing thrown";
        } catch (std::exception const& exception) {
            EXPECT_EQ(typeid(exception), row.type);
            std::string const what = exception.what();
            EXPECT_EQ(what.substr(0, what.find('=')), "$$$/brindle/filesupport/" + row.key);
            EXPECT_NE(what.find("'@0'"), std::string::npos);
            auto const& failure = dynamic_cast<config::FileFailure const&>(exception);
            EXPECT_FALSE(failure.Path().empty());
            EXPECT_EQ(failure.Operation(), row.operation);
            EXPECT_EQ(failure.Cause(), row.cause);
            if (auto const* const rename = dynamic_cast<rename_dir const*>(&exception)) {
                EXPECT_EQ(rename->GetNewName(), other);
                EXPECT_NE(rename->GetDir(), Dir());
            }
        }
    }
}

TEST_F(FileTest, RenamingTakesTheObjectAlong) {
    Fill("a", "123");
    File file = FileAt("a");
    file.Rename(u"b.c"_utf16);
    EXPECT_EQ(file, FileAt("b.c"));
    EXPECT_EQ(file.Size(kFileSize_Data), 3u);
    Dir dir = DirAt("d");
    dir.Create();
    dir.Create(); // what exists is no failure
    dir.Rename(u"e"_utf16);
    EXPECT_EQ(dir, DirAt("e"));
    EXPECT_TRUE(FileAt("e").Exists()) << "a directory counts for a file";
    EXPECT_FALSE(DirAt("b.c").Exists()) << "a file does not count for a directory";
    EXPECT_TRUE(Dir(u"C:\\"_utf16).Exists());
}

TEST_F(FileTest, DrivesNameDirectories) {
    MapVolume('q', mDir);
    EXPECT_EQ(Native("file"), NativePath(File(u"Q:/file"_utf16)));
    std::vector<Dir> volumes;
    for (auto volume = Dir::BeginVolumes(); volume != Dir::EndVolumes(); ++volume) {
        volumes.push_back(*volume);
    }
    EXPECT_EQ(volumes, (std::vector<Dir>{Dir(u"C:"_utf16), Dir(u"Q:"_utf16)}));
    MapVolume('Q', Dir());
    EXPECT_EQ(NativePath(File(u"Q:\\file"_utf16)), "");
    EXPECT_THROW(MapVolume('C', mDir), dir_exception);
    EXPECT_THROW(MapVolume('q', DirAt("missing")), dir_exception);
}

TEST_F(FileTest, ShortcutsLeadToFilesAndDirectories) {
    File const target = FileAt("target"), toFile = FileAt("to file.LNK"), toDir = FileAt("to.lnk");
    Dir const targetDir = DirAt("dir");
    target.Create();
    targetDir.Create();
    CreateShortCut(toFile, target);
    CreateShortCut(toDir, targetDir);
    EXPECT_EQ(File(mDir, toFile.GetName(), true), target) << "the extension counts in any case";
    EXPECT_EQ(File(mDir, toDir.GetName(), true), toDir) << "a directory is no file";
    EXPECT_EQ(Dir(mDir, toDir.GetName(), true), targetDir);
    EXPECT_EQ(Dir(mDir, toFile.GetName(), true), DirAt("to file.LNK"));
    EXPECT_EQ(Dir(mDir, toDir.GetName(), false), DirAt("to.lnk"));
    File file;
    Dir dir;
    bool isDir = false;
    EXPECT_TRUE(ResolveIfAlias(toDir, file, dir, isDir));
    EXPECT_TRUE(isDir);
    EXPECT_EQ(dir, targetDir);
    target.Delete();
    EXPECT_FALSE(ResolveIfAlias(toFile, file, dir, isDir)) << "a broken shortcut leads nowhere";
}

TEST_F(FileTest, DirectoriesAreCreatedWithTheirParents) {
    Dir const deep = DirAt("a/b/c");
    deep.CreateAll();
    deep.CreateAll();
    EXPECT_TRUE(deep.Exists());
    Fill("file", "");
    for (auto const& dir : {DirAt("file"), DirAt("file/x/y"), Dir()}) {
        try {
            dir.CreateAll();
            ADD_FAILURE();
        } catch (dir_exception const& failure) {
            EXPECT_EQ(failure.GetDir(), dir == Dir() ? Dir() : DirAt("file"));
            EXPECT_NE(failure.Cause(), utility::SystemError::kNone);
        }
    }
}

TEST_F(FileTest, VolumesTellTheirSpace) {
    auto const space = SpaceOf(mDir);
    auto const expected = std::filesystem::space(mTemporary.Native());
    EXPECT_EQ(space.total, expected.capacity);
    EXPECT_GT(space.available, 0u);
    EXPECT_LE(space.available, space.total);
    EXPECT_THROW(static_cast<void>(SpaceOf(DirAt("missing"))), dir_not_found_exception);
}

TEST_F(FileTest, StreamsWriteOverWhatIsThereAndReadToTheEnd) {
    File const file = FileAt("file");
    Fill("file", "0123456789");
    {
        OPlatformByteStream out(file);
        out.Put('a');
        EXPECT_EQ(out.Length(), 10u);
        out.CurPos(8);
        out.WriteBlock(reinterpret_cast<std::uint8_t const*>("bcd"), 3);
        EXPECT_EQ(out.CurPos(), 11u);
    }
    IPlatformByteStream in(file), other(file);
    EXPECT_THROW(OPlatformByteStream{file}, io_error);
    EXPECT_EQ(in.Get(), 'a');
    std::uint8_t block[10];
    in.ReadBlock(block, 7);
    EXPECT_EQ(in.CurPos(), 8u);
    EXPECT_THROW(in.ReadBlock(block + 7, 4), eof_error);
    EXPECT_EQ(std::string(block, block + 10), "1234567bcd");
    EXPECT_THROW(in.Get(), eof_error);
    in.CurPos(1u << 20);
    EXPECT_THROW(in.Get(), eof_error);
    EXPECT_EQ(in.Length(), 11u);
}

TEST_F(FileTest, ANewFileTakesNobodysPlace) {
    File const file = FileAt("file"), link = FileAt("link");
    std::filesystem::create_symlink("file", Native("link"));
    EXPECT_THROW((OPlatformByteStream{link, kMakeNewFile}), create_exception);
    EXPECT_FALSE(file.Exists());
    OPlatformByteStream(file, kMakeNewFile).Put('a');
    EXPECT_THROW((OPlatformByteStream{file, kMakeNewFile}), create_exception);
    EXPECT_EQ(IPlatformByteStream(file).Get(), 'a');
    OPlatformByteStream(File(At("private")), kMakeNewPrivateFile);
    EXPECT_EQ(std::filesystem::status(Native("private")).permissions(),
              std::filesystem::perms(0600));
}

template <typename Exception, typename Action>
void ExpectFailure(File const& inFile, Operation inOperation, Cause inCause, Action inAction) {
    try {
        inAction();
        ADD_FAILURE() << "nothing thrown";
    } catch (Exception const& failure) {
        EXPECT_EQ(failure.Path(), inFile.FullPath());
        EXPECT_EQ(failure.Operation(), inOperation);
        EXPECT_EQ(failure.Cause(), inCause);
    }
}

TEST_F(FileTest, FailuresOfStreamsKnowTheirCause) {
    File const file = FileAt("file"), dir(mTemporary.Path()), missing = FileAt("no/file");
    ExpectFailure<file_not_found_exception>(file, Operation::kOpen, Cause::kFileNotFound,
                                            [&] { IPlatformByteStream{file}; });
    ExpectFailure<file_not_found_exception>(missing, Operation::kOpen, Cause::kPathNotFound,
                                            [&] { OPlatformByteStream{missing}; });
    ExpectFailure<io_error>(dir, Operation::kOpen, Cause::kAccessDenied,
                            [&] { IPlatformByteStream{dir}; });
    Fill("file", "0");
    OPlatformByteStream out(file);
    ExpectFailure<io_error>(file, Operation::kOpen, Cause::kSharingViolation,
                            [&] { IPlatformByteStream{file}; });
    ExpectFailure<io_error>(file, Operation::kSeek, Cause::kInvalidParameter,
                            [&] { out.CurPos(~std::uint64_t{0}); });
    out.CurPos(~std::uint64_t{0} / 2);
    ExpectFailure<io_error>(file, Operation::kWrite, Cause::kFileTooLarge, [&] { out.Put('x'); });
    IPlatformByteStream in(file, kShareWithEverybody);
    EXPECT_EQ(in.Get(), '0') << "what only looks is not refused";
    ExpectFailure<eof_error>(file, Operation::kRead, Cause::kEndOfFile, [&] { in.Get(); });
    auto cause = Cause::kNone;
    EXPECT_EQ(KindOf(missing, cause), FileKind::kMissing);
    EXPECT_EQ(cause, Cause::kPathNotFound);
    ExpectFailure<config::FileFailure>(missing, Operation::kCreate, Cause::kPathNotFound,
                                       [&] { OSafeSaveStream{missing}; });
    ExpectFailure<config::FileFailure>(file, Operation::kReplace, Cause::kSharingViolation,
                                       [&] { OSafeSaveStream{file}; });
}

} // namespace

} // namespace brindle::filesupport
