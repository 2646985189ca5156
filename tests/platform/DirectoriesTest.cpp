#include "platform/Directories.h"
#include "platform/Files.h"

#include "tests/InTemporaryDirectory.h"

#include <climits>

namespace brindle::platform {

namespace {

using Directories = tests::InTemporaryDirectory;

TEST_F(Directories, MakingAndRemovingTellWhatWentWrong) {
    Fill("file", "x");
    EXPECT_EQ(CreateDirectory(At("dir")), kError_None);
    EXPECT_EQ(CreateDirectory(At("dir/sub")), kError_None);
    std::filesystem::create_symlink("dir", Native("link"));
    struct Case {
        char const* name;
        ErrorCode creating, scanning, removing;
    };
    Case const cases[] = {
        {"dir/", kError_AlreadyExists, kError_None, kError_DirectoryNotEmpty},
        {"file", kError_AlreadyExists, kError_NotADirectory, kError_NotADirectory},
        {"file/x", kError_PathNotFound, kError_PathNotFound, kError_PathNotFound},
        {"none/x", kError_PathNotFound, kError_PathNotFound, kError_PathNotFound},
        {"link/", kError_AlreadyExists, kError_None, kError_None},
        {"dir/sub", kError_AlreadyExists, kError_None, kError_None},
        {"dir", kError_AlreadyExists, kError_None, kError_None},
    };
    for (auto const& one : cases) {
        EXPECT_EQ(CreateDirectory(At(one.name)), one.creating) << one.name;
        EXPECT_EQ(DirectoryScan(At(one.name)).Error(), one.scanning) << one.name;
        EXPECT_EQ(RemoveDirectory(At(one.name)), one.removing) << one.name;
    }
    EXPECT_FALSE(IsSymbolicLink(At("link")));
    EXPECT_EQ(CreateDirectory({}), kError_PathNotFound);
    EXPECT_EQ(DirectoryScan(At("none")).Error(), kError_FileNotFound);
    EXPECT_EQ(RemoveDirectory(At("none")), kError_FileNotFound);
}

TEST_F(Directories, PathsLongerThanTheKernelTakesAtOnceWork) {
    std::vector<UTF16String> levels{mTemporary.Path()};
    while (levels.back().size() < 3 * PATH_MAX) {
        levels.push_back(levels.back() + u"\\"_utf16 + UTF16String(200, 'd'));
        ASSERT_EQ(CreateDirectory(levels.back()), kError_None);
    }
    auto const& deepest = levels.back();
    auto const file = deepest + u"\\\\\\file"_utf16;
    auto const moved = deepest + u"\\moved"_utf16;
    EXPECT_EQ(CreateEmptyFile(file), kError_None);
    EXPECT_EQ(ReplaceContent(file, "con", 3), kError_None);
    EXPECT_EQ(AppendContent(file, "tent", 4), kError_None);
    EXPECT_EQ(Move(file, moved), kError_None);
    EXPECT_EQ(OpenForReading(moved).value.Size().value, 7U);
    EXPECT_EQ(Inspect(file).error, kError_FileNotFound);
    EXPECT_EQ(Inspect(file + u"\\x"_utf16).error, kError_PathNotFound);
    EXPECT_EQ(Inspect(deepest + UTF16String(PATH_MAX, '\\')).error, kError_None);
    EXPECT_EQ(Inspect(deepest + u"\\"_utf16 + UTF16String(5000, 'n')).error, kError_NameTooLong);
    EXPECT_EQ(MapVolume('L', deepest), kError_None);
    EXPECT_EQ(Inspect(u"L:\\moved"_utf16).value.size, 7U);
    EXPECT_EQ(MapVolume('L', {}), kError_None);

    EXPECT_EQ(DeleteFile(moved), kError_None);
    for (; levels.size() > 1; levels.pop_back()) {
        EXPECT_EQ(RemoveDirectory(levels.back()), kError_None);
    }
}

} // namespace

} // namespace brindle::platform
