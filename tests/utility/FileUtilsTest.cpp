#include <brindle/utility/FileUtils.h>

#include "tests/support/InTemporaryDirectory.h"

#include <algorithm>

namespace brindle::utility {

namespace {

using FileUtilsTest = tests::InTemporaryDirectory;

TEST_F(FileUtilsTest, NamesAreCleanedForEveryFileSystem) {
    struct Case {
        UTF16String name;
        std::uint16_t replacement;
        UTF16String cleaned;
    };
    Case const cases[] = {
        {u"\\/:*?\"<>|"_utf16, '_', u"_________"_utf16},
        {u"con"_utf16, '_', u"con_"_utf16},
        {u"com1.tar.gz"_utf16, '_', u"com_.tar.gz"_utf16},
        {u"console.txt"_utf16, '_', u"console.txt"_utf16},
        {u"NUL."_utf16, '_', u"NU__"_utf16},
        {u"name "_utf16, '_', u"name_"_utf16},
        {u".hidden"_utf16, '_', u"_hidden"_utf16},
        {u"tab\t\x1F\x7F"_utf16, '_', u"tab__\x7F"_utf16},
        {u"a:b"_utf16, '/', u"a-b"_utf16},
        {u"a:b"_utf16, '.', u"a-b"_utf16},
        {u""_utf16, '_', u""_utf16},
    };
    for (auto const& one : cases) {
        auto name = one.name;
        EXPECT_EQ(FileUtils::ReplaceIllegalFileNameCharacters(name, one.replacement),
                  one.cleaned != one.name);
        EXPECT_EQ(name, one.cleaned);
    }
}

TEST_F(FileUtilsTest, PathsAreSplitAndJoined) {
    struct Case {
        UTF16String path;
        UTF16String parent; // empty: there is none
    };
    Case const cases[] = {
        {u"C:\\a\\b.txt"_utf16, u"C:\\a"_utf16}, {u"C:\\a\\"_utf16, u"C:\\a"_utf16},
        {u"C:\\a\\\\b"_utf16, u"C:\\a"_utf16},   {u"a/b"_utf16, u"a"_utf16},
        {u"name"_utf16, u"name"_utf16},          {u"\\name"_utf16, {}},
    };
    for (auto const& one : cases) {
        auto path = one.path;
        EXPECT_EQ(FileUtils::GetParentPath(path, path), !one.parent.empty());
        EXPECT_EQ(path, one.parent.empty() ? one.path : one.parent);
    }
    UTF16String path = u"C:\\a"_utf16;
    FileUtils::BuildPathSpec(path, u"b"_utf16, path);
    EXPECT_EQ(path, u"C:\\a\\b"_utf16);
    FileUtils::BuildPathSpec(u"C:\\a\\"_utf16, u"b"_utf16, path);
    EXPECT_EQ(path, u"C:\\a\\b"_utf16);
}

TEST_F(FileUtilsTest, WholeFilesAreWrittenAppendedAndRemoved) {
    auto const path = At("file");
    FileUtils::SimpleWriteStringToFile(path, "second\n\0"_utf8);
    EXPECT_EQ(ContentOf("file"), std::string("second\n\0", 8));
    FileUtils::CreateNewFile(path);
    FileUtils::SimpleAppendStringToFile(path, "one\n"_utf8);
    EXPECT_EQ(ContentOf("file"), "one\n");
    EXPECT_TRUE(FileUtils::FileExists(path));
    EXPECT_TRUE(FileUtils::RemoveFile(path));
    EXPECT_FALSE(FileUtils::FileExists(path));
    EXPECT_FALSE(FileUtils::RemoveFile(path));
}

TEST_F(FileUtilsTest, ListingsAndFreshNamesSeeWhatIsThere) {
    std::filesystem::create_directory(Native("sub"));
    std::filesystem::create_symlink("sub", Native("to-sub"));
    std::filesystem::create_symlink("nowhere", Native("new2.txt"));
    Fill(".hidden", "x");
    for (auto const* const name : {"new1.txt", "new3.txt"}) {
        auto const fresh =
            FileUtils::UniqueFileName(mTemporary.Path(), u"new"_utf16, u".txt"_utf16);
        EXPECT_EQ(fresh, At(name));
        FileUtils::CreateNewFile(fresh);
    }
    std::vector<UTF16String> paths{u"before"_utf16};
    FileUtils::ContainedFiles(mTemporary.Path(), paths);
    FileUtils::ContainedFiles(At("none"), paths);
    std::sort(paths.begin() + 1, paths.end());
    EXPECT_EQ(paths, (std::vector<UTF16String>{u"before"_utf16, At("new1.txt"), At("new2.txt"),
                                               At("new3.txt")}));
}

TEST_F(FileUtilsTest, ShortcutsResolveOrTellWhyNot) {
    auto const link = At("link.lnk");
    auto path = link;
    bool isDirectory = false;
    EXPECT_EQ(FileUtils::ResolveIT(path, isDirectory), static_cast<std::int32_t>(0x80070002U));
    EXPECT_EQ(FileUtils::CreateLink(mTemporary.Path(), link, {}), 0);
    EXPECT_EQ(FileUtils::ResolveIT(path, isDirectory), 0);
    EXPECT_TRUE(isDirectory);
    EXPECT_EQ(path, mTemporary.Path());
}

} // namespace

} // namespace brindle::utility
