#include "platform/Directories.h"
#include "platform/Files.h"

#include "tests/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <climits>
#include <fstream>
#include <unistd.h>
#include <vector>

namespace brindle::platform {

namespace {

using tests::TemporaryDirectory;

TEST(Directories, MakingAndRemovingTellWhatWentWrong) {
    TemporaryDirectory const directory;
    std::ofstream(directory.Native("file")) << "x";
    auto const path = directory.Path(u"dir"_utf16);
    EXPECT_EQ(CreateDirectory(path), kError_None);
    EXPECT_EQ(CreateDirectory(path + u"\\"_utf16), kError_AlreadyExists);
    EXPECT_EQ(CreateDirectory(directory.Path(u"file"_utf16)), kError_AlreadyExists);
    EXPECT_EQ(CreateDirectory(directory.Path(u"none\\x"_utf16)), kError_PathNotFound);
    EXPECT_EQ(CreateDirectory({}), kError_PathNotFound);

    EXPECT_EQ(CreateDirectory(path + u"\\sub"_utf16), kError_None);
    EXPECT_EQ(RemoveDirectory(path), kError_DirectoryNotEmpty);
    EXPECT_EQ(RemoveDirectory(directory.Path(u"file"_utf16)), kError_NotADirectory);
    EXPECT_EQ(RemoveDirectory(directory.Path(u"file\\x"_utf16)), kError_PathNotFound);
    EXPECT_EQ(RemoveDirectory(directory.Path(u"none"_utf16)), kError_FileNotFound);
    EXPECT_EQ(DirectoryScan(directory.Path(u"file"_utf16)).Error(), kError_NotADirectory);
    EXPECT_EQ(DirectoryScan(directory.Path(u"none"_utf16)).Error(), kError_FileNotFound);
    EXPECT_EQ(DirectoryScan(directory.Path(u"none\\x"_utf16)).Error(), kError_PathNotFound);

    ASSERT_EQ(symlink("dir", directory.Native("link").c_str()), 0);
    EXPECT_EQ(RemoveDirectory(directory.Path(u"link\\"_utf16)), kError_None);
    EXPECT_FALSE(IsSymbolicLink(directory.Path(u"link"_utf16)));
    EXPECT_EQ(Inspect(path + u"\\sub"_utf16).value.kind, FileKind::kDirectory);
    EXPECT_EQ(RemoveDirectory(path + u"\\sub"_utf16), kError_None);
    EXPECT_EQ(RemoveDirectory(path), kError_None);
}

TEST(Directories, PathsLongerThanTheKernelTakesAtOnceWork) {
    TemporaryDirectory const directory;
    std::vector<UTF16String> levels{directory.Path()};
    while (levels.back().size() < 3 * PATH_MAX) {
        levels.push_back(levels.back() + u"\\"_utf16 + UTF16String(200, 'd'));
        ASSERT_EQ(CreateDirectory(levels.back()), kError_None);
    }
    auto const file = levels.back() + u"\\\\\\file"_utf16;
    auto const moved = levels.back() + u"\\moved"_utf16;
    EXPECT_EQ(CreateEmptyFile(file), kError_None);
    EXPECT_EQ(ReplaceContent(file, "con", 3), kError_None);
    EXPECT_EQ(AppendContent(file, "tent", 4), kError_None);
    EXPECT_EQ(Move(file, moved), kError_None);
    EXPECT_EQ(OpenForReading(moved).value.Size().value, 7U);
    EXPECT_EQ(Inspect(file).error, kError_FileNotFound);
    EXPECT_EQ(Inspect(file + u"\\x"_utf16).error, kError_PathNotFound);
    EXPECT_EQ(Inspect(levels.back() + UTF16String(PATH_MAX, '\\')).value.kind,
              FileKind::kDirectory);
    EXPECT_EQ(Inspect(levels.back() + u"\\"_utf16 + UTF16String(5000, 'n')).error,
              kError_NameTooLong);

    DirectoryScan scan(levels.back());
    DirectoryEntry entry;
    ASSERT_TRUE(scan.Next(entry));
    EXPECT_EQ(entry.name, u"moved"_utf16);
    EXPECT_EQ(MapVolume('L', levels.back()), kError_None);
    EXPECT_EQ(Inspect(u"L:\\moved"_utf16).value.size, 7U);
    EXPECT_EQ(MapVolume('L', {}), kError_None);

    EXPECT_EQ(DeleteFile(moved), kError_None);
    for (; levels.size() > 1; levels.pop_back()) {
        EXPECT_EQ(RemoveDirectory(levels.back()), kError_None);
    }
}

} // namespace

} // namespace brindle::platform
