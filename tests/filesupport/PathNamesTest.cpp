#include <brindle/filesupport/File.h>
#include <brindle/filesupport/PathNames.h>

#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <string>

namespace brindle::filesupport {

namespace {

using tests::Narrow;
using tests::Wide;

TEST(PathNames, NormalFormHasBackslashesNoPrefixAndNoDoubles) {
    struct {
        char const *given, *file, *dir;
    } const rows[] = {
        {R"()", R"()", R"()"},
        {R"(C:/a//b)", R"(C:\a\b)", R"(C:\a\b)"},
        {R"(C:\)", R"(C:\)", R"(C:)"},
        {R"(C:\a\\)", R"(C:\a\)", R"(C:\a\)"},
        {R"(C:/a/)", R"(C:\a\)", R"(C:\a\)"},
        {R"(\\?\C:\a)", R"(C:\a)", R"(C:\a)"},
        {R"(\\?\UNC\srv\share\x)", R"(\\srv\share\x)", R"(\\srv\share\x)"},
        {R"(//?/UNC/srv/share)", R"(\\srv\share)", R"(\\srv\share)"},
        {R"(\\\\srv\\\share)", R"(\\srv\share)", R"(\\srv\share)"},
        {R"(\\?\)", R"()", R"(\\?)"},
        {R"(/usr/lib)", R"(\usr\lib)", R"(\usr\lib)"},
        {R"(a)", R"(a)", R"(a)"},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(row.file, Narrow(File(Wide(row.given)).FullPath())) << row.given;
        EXPECT_EQ(row.dir, Narrow(Dir(Wide(row.given)).FullPath())) << row.given;
    }
}

TEST(PathNames, NativeFormHasThePrefixOfItsKind) {
    std::pair<char const*, char const*> const rows[] = {
        {R"(C:\a)", R"(\\?\C:\a)"},     {R"(\\srv\share\x)", R"(\\?\UNC\srv\share\x)"},
        {R"(\\srv)", R"(\\?\\\srv)"},   {R"(a)", R"(\\?\a)"},
        {R"(unc\a)", R"(\\?\.\unc\a)"}, // no server
    };
    for (auto const& [path, native] : rows) {
        EXPECT_EQ(native, Narrow(Dir(Wide(path)).Helper().FullNativePath()));
        EXPECT_EQ(native, Narrow(File(Wide(path)).Helper().FullNativePath()));
    }
}

TEST(PathNames, SplitAtTheLastSeparatorAndTheDotBehindIt) {
    struct {
        char const *path, *parent, *title, *extension;
        bool isTop;
    } const rows[] = {
        {R"(c:\x\a.B)", R"(c:\x)", "a", ".B", false},
        {R"(a.b)", "", "a.b", "", true},
        {R"(C:\x.y\a)", R"(C:\x.y)", "a", "", false},
        {R"(C:\.profile)", "C:", "", ".profile", false},
        {R"(C:\a.b.c)", "C:", "a.b", ".c", false},
        {R"(\a)", "", "a", "", true},
        {R"(C:)", "", "C:", "", true},
        {R"(\\srv\share)", R"(\\srv)", "share", "", false},
    };
    for (auto const& row : rows) {
        File const file(Wide(row.path));
        Dir const dir(Wide(row.path));
        SCOPED_TRACE(row.path);
        EXPECT_EQ(row.parent, Narrow(file.Parent().FullPath()));
        EXPECT_EQ(row.parent, Narrow(dir.Parent().FullPath()));
        EXPECT_EQ(row.title, Narrow(file.GetTitle()));
        EXPECT_EQ(row.extension, Narrow(file.GetExtension(false)));
        EXPECT_EQ(file.GetName(), Wide(row.title) + Wide(row.extension));
        EXPECT_EQ(file.GetName(), dir.GetName());
        EXPECT_EQ(row.isTop, dir.IsTopLevelDir());
    }
    EXPECT_EQ(u".b"_utf16, File(Wide(R"(c:\x\a.B)")).GetExtension(true));
}

TEST(PathNames, BelowADirectoryOneSeparatorIsEnough) {
    EXPECT_EQ(R"(C:\a\b)", Narrow(Dir(Dir(Wide(R"(C:\a\\)")), Wide("b")).FullPath()));
    EXPECT_EQ(R"(C:\a\b)", Narrow(File(Dir(Wide(R"(C:\a)")), Wide("b")).FullPath()));
    EXPECT_EQ(R"(\usr)", Narrow(Dir(Dir(Wide("/")), Wide("usr")).FullPath())) << "no server";
}

TEST(PathNames, EqualityIsExactAndOrderIsNot) {
    File const lower(Wide(R"(C:\a)")), upper(Wide(R"(C:\A)"));
    EXPECT_TRUE(lower != upper);
    EXPECT_TRUE(lower == File(Wide("C:/a")));
    EXPECT_EQ(0, CompareFileNames(lower.FullPath(), upper.FullPath()));
    EXPECT_EQ(-1, CompareFileNames(u"a"_utf16, u"B"_utf16));
    EXPECT_EQ(1, CompareFileNames(u"b"_utf16, u"A"_utf16));
    EXPECT_EQ(0, CompareFileNames(u"\uFF21\u3042\uFF76"_utf16, u"a\u30A2\u30AB"_utf16))
        << "neither width nor kana type counts";
    EXPECT_EQ(0, CompareFileNames(u"a\0b"_utf16, u"a"_utf16)) << "a NUL ends a name";
}

TEST(PathNames, RelativePathsLeadThereAndBack) {
    struct {
        char const *target, *base, *relative;
    } const rows[] = {
        {R"(C:\a\b\t.txt)", R"(C:\a\c\base.xml)", "../b/t.txt"},
        {R"(C:\a\t.txt)", R"(C:\a\base.xml)", "t.txt"},
        {R"(C:\a\b\c\t)", R"(C:\a\x)", "b/c/t"},
        {R"(C:\t)", R"(C:\a\b\x)", "../../t"},
        {R"(\\srv\share\t)", R"(\\srv\other\x)", "../share/t"},
        {R"(C:\a\b:\t)", R"(C:\a\x)", "./b:/t"},
        {R"(C:\a\t)", R"(D:\a\x)", ""},
        {R"(\\srv\share\t)", R"(\\other\share\x)", ""},
    };
    for (auto const& row : rows) {
        File const target(Wide(row.target)), base(Wide(row.base));
        EXPECT_EQ(row.relative, Narrow(MakeNormalizedRelativePath(target, base))) << row.target;
        EXPECT_EQ(*row.relative != 0, MakeFileFromPath(Wide(row.relative), base) == target);
    }
    File const onC(Wide(R"(C:\a\x)")), onD(Wide(R"(D:\a\x)"));
    EXPECT_EQ(onD, MakeFileFromPath(Wide("D:/a/x"), onC)) << "an absolute path ignores the base";
    EXPECT_EQ(File(), MakeFileFromPath(Wide("b/"), onC));
    EXPECT_EQ(onC, MakeFileFromPath(Wide("./b/.././x"), onC));
    EXPECT_EQ(R"(C:\a\x\y)", Narrow(MakeFileFromPath(Wide(R"(x\y)"), onC).FullPath()));
    EXPECT_TRUE(IsNormalizedRelativePath(Wide(R"(a\b)")));
    for (char const* const absolute : {"", "/a", R"(\a)", "C:a"}) {
        EXPECT_FALSE(IsNormalizedRelativePath(Wide(absolute))) << absolute;
    }
}

} // namespace

} // namespace brindle::filesupport
