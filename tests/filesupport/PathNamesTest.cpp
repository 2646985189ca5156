#include <brindle/filesupport/DisplayPath.h>
#include <brindle/filesupport/File.h>
#include <brindle/filesupport/FilesystemPath.h>
#include <brindle/filesupport/PathNames.h>

#include "tests/support/Environment.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <set>
#include <unordered_set>

namespace brindle::filesupport {

namespace {

using tests::Narrow;
using tests::Wide;

TEST(PathNames, HaveANormalFormAndBehindAPrefixANativeOne) {
    struct {
        char const *given, *file, *dir, *native;
    } const rows[] = {
        {R"()", R"()", R"()", R"(\\?\)"},
        {R"(C:/a//b)", R"(C:\a\b)", R"(C:\a\b)", R"(\\?\C:\a\b)"},
        {R"(C:\)", R"(C:\)", R"(C:)", R"(\\?\C:)"},
        {R"(C:\a\\)", R"(C:\a\)", R"(C:\a\)", R"(\\?\C:\a\)"},
        {R"(\\?\C:\a)", R"(C:\a)", R"(C:\a)", R"(\\?\C:\a)"},
        {R"(\\?\UNC\srv\x)", R"(\\srv\x)", R"(\\srv\x)", R"(\\?\UNC\srv\x)"},
        {R"(\\\\srv\\\x)", R"(\\srv\x)", R"(\\srv\x)", R"(\\?\UNC\srv\x)"},
        {R"(//srv)", R"(\\srv)", R"(\\srv)", R"(\\?\\\srv)"},
        {R"(\\?\)", R"()", R"(\\?)", R"(\\?\\\?)"},
        {R"(a)", R"(a)", R"(a)", R"(\\?\a)"},
        {R"(unc\a)", R"(unc\a)", R"(unc\a)", R"(\\?\.\unc\a)"}, // no server
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.given);
        Dir const dir(Wide(row.given));
        EXPECT_EQ(row.file, Narrow(File(Wide(row.given)).FullPath()));
        EXPECT_EQ(row.dir, Narrow(dir.FullPath()));
        EXPECT_EQ(row.native, Narrow(dir.Helper().FullNativePath()));
    }
    EXPECT_EQ(R"(\\?\a)", Narrow(File(Wide("a")).Helper().FullNativePath()));
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
        {R"(C:\a\b\c\t)", R"(C:\a\x)", "b/c/t"},
        {R"(C:\t)", R"(C:\a\b\x)", "../../t"},
        {R"(\\srv\share\t)", R"(\\srv\other\x)", "../share/t"},
        {R"(C:\a\b:\t)", R"(C:\a\x)", "./b:/t"},
        {R"(C:\a\t)", R"(D:\a\x)", ""},
    };
    for (auto const& row : rows) {
        File const target(Wide(row.target)), base(Wide(row.base));
        EXPECT_EQ(row.relative, Narrow(MakeNormalizedRelativePath(target, base))) << row.target;
        EXPECT_EQ(*row.relative != 0, MakeFileFromPath(Wide(row.relative), base) == target);
        EXPECT_EQ(Narrow(RelativePath(base.Parent(), target)), row.relative);
        EXPECT_EQ(Narrow(RelativePath(base.Parent(), Dir(target.FullPath()))), row.relative);
    }
    Dir const inner(Wide(R"(C:\a\b)"));
    EXPECT_EQ(Narrow(RelativePath(inner, inner)), ".");
    EXPECT_EQ(Narrow(RelativePath(inner, inner.Parent())), "..");
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

TEST(PathNames, ExtensionsAreReplacedAddedAndRemoved) {
    struct {
        char const *path, *extension, *result;
    } const rows[] = {
        {R"(C:\a.b\c.mov)", ".wav", R"(C:\a.b\c.wav)"},
        {R"(C:\a.b\c)", "wav", R"(C:\a.b\c.wav)"},
        {R"(C:\a.b\c.tar.gz)", "", R"(C:\a.b\c.tar)"},
        {"c.mov", ".wav", "c.mov.wav"}, // a path without a separator has no extension
    };
    for (auto const& row : rows) {
        File const changed = WithExtension(File(Wide(row.path)), Wide(row.extension));
        EXPECT_EQ(Narrow(changed.FullPath()), row.result);
    }
}

TEST(PathNames, AreShownAsPeopleWriteThem) {
    tests::Environment const settings{{{"HOME", "/usr"}}};
    struct {
        char const *native, *shown;
    } const rows[] = {
        {"/usr/lib/a.mov", "~/lib/a.mov"},
        {"/usr", "~"},
        {"/usrlocal", "/usrlocal"},
        {"/tmp/\xFFx", "/tmp/\uFFFDx"},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(Narrow(DisplayPath(FileFromNative(row.native))), row.shown);
        EXPECT_EQ(Narrow(DisplayPath(DirFromPath(row.native))), row.shown);
    }
    EXPECT_EQ(Narrow(DisplayPath(File(Wide(R"(Q:\x)")))), R"(Q:\x)");
}

TEST(PathNames, AreKeysOfContainersAndPathsOfTheStandardLibrary) {
    std::filesystem::path const native("/tmp/\xFF\\name");
    auto const file = FileFromPath(native);
    auto const dir = DirFromPath(native);
    EXPECT_EQ(ToPath(file), native);
    EXPECT_EQ(ToPath(dir), native);
    EXPECT_EQ((std::set<File>{file, FileFromPath("/b"), file}).size(), 2u);
    EXPECT_EQ((std::unordered_set<Dir>{dir, DirFromPath("/a"), dir}).size(), 2u);
}

} // namespace

} // namespace brindle::filesupport
