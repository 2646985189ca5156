#include "platform/Directories.h"
#include "platform/FileContent.h"
#include "platform/Files.h"

#include "tests/support/InTemporaryDirectory.h"

#include <climits>

namespace brindle::platform {

namespace {

using Directories = tests::InTemporaryDirectory;

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
    EXPECT_EQ(Inspect(moved).value.size, 7U);
    EXPECT_EQ(DirectoryScan(moved).Error(), kError_NotADirectory);
    EXPECT_EQ(RemoveDirectory(moved), kError_NotADirectory);
    EXPECT_EQ(RemoveDirectory(deepest), kError_DirectoryNotEmpty);
    EXPECT_EQ(Inspect(deepest + UTF16String(PATH_MAX, '\\')).error, kError_None);
    EXPECT_EQ(Inspect(deepest + u"\\"_utf16 + UTF16String(5000, 'n')).error, kError_NameTooLong);

    EXPECT_EQ(DeleteFile(moved), kError_None);
    for (; levels.size() > 1; levels.pop_back()) {
        EXPECT_EQ(RemoveDirectory(levels.back()), kError_None);
    }
}

} // namespace

} // namespace brindle::platform
