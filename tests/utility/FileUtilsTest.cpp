#include <brindle/utility/FileUtils.h>

#include "tests/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>

namespace brindle::utility {

namespace {

using tests::TemporaryDirectory;

std::string ContentOf(std::string const& inNativePath) {
    std::ifstream file(inNativePath, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

TEST(FileUtils, NamesAreCleanedForEveryFileSystem) {
    struct Case {
        UTF16String name;
        std::uint16_t replacement;
        UTF16String cleaned;
    };
    Case const cases[] = {
        {u"a/b"_utf16, '_', u"a_b"_utf16},
        {u"\\/:*?\"<>|"_utf16, '_', u"_________"_utf16},
        {u"plain"_utf16, '_', u"plain"_utf16},
        {u"con"_utf16, '_', u"con_"_utf16},
        {u"lPt9"_utf16, '_', u"lPt9_"_utf16},
        {u"CON.txt"_utf16, '_', u"CO_.txt"_utf16},
        {u"com1.tar.gz"_utf16, '_', u"com_.tar.gz"_utf16},
        {u"console.txt"_utf16, '_', u"console.txt"_utf16},
        {u"NUL."_utf16, '_', u"NU__"_utf16},
        {u"name."_utf16, '_', u"name_"_utf16},
        {u"name "_utf16, '_', u"name_"_utf16},
        {u".hidden"_utf16, '_', u"_hidden"_utf16},
        {u"."_utf16, '_', u"_"_utf16},
        {u"tab\t\x1F\x7F"_utf16, '_', u"tab__\x7F"_utf16},
        {u"a:b"_utf16, '/', u"a-b"_utf16},
        {u"a:b"_utf16, '.', u"a-b"_utf16},
        {u"a:b"_utf16, ' ', u"a-b"_utf16},
        {u""_utf16, '_', u""_utf16},
    };
    for (auto const& one : cases) {
        auto name = one.name;
        EXPECT_EQ(FileUtils::ReplaceIllegalFileNameCharacters(name, one.replacement),
                  one.cleaned != one.name);
        EXPECT_EQ(name, one.cleaned);
    }
}

TEST(FileUtils, PathsAreSplitAndJoined) {
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
    FileUtils::BuildPathSpec({}, u"b"_utf16, path);
    EXPECT_EQ(path, u"b"_utf16);
}

TEST(FileUtils, WholeFilesAreWrittenAppendedAndRemoved) {
    TemporaryDirectory const directory;
    auto const path = directory.Path(u"file"_utf16);
    FileUtils::SimpleWriteStringToFile(path, "first and longer"_utf8);
    FileUtils::SimpleWriteStringToFile(path, "second\n\0"_utf8);
    EXPECT_EQ(ContentOf(directory.Native("file")), std::string("second\n\0", 8));
    FileUtils::CreateNewFile(path);
    EXPECT_TRUE(FileUtils::FileExists(path));
    FileUtils::SimpleAppendStringToFile(path, "one\n"_utf8);
    FileUtils::SimpleAppendStringToFile(path, "two\n"_utf8);
    EXPECT_EQ(ContentOf(directory.Native("file")), "one\ntwo\n");
    EXPECT_TRUE(FileUtils::RemoveFile(path));
    EXPECT_FALSE(FileUtils::RemoveFile(path));
    EXPECT_FALSE(FileUtils::FileExists(path));
    EXPECT_TRUE(FileUtils::FileExists(directory.Path()));
    EXPECT_FALSE(FileUtils::RemoveFile(directory.Path()));
}

TEST(FileUtils, ListingsAndFreshNamesSeeWhatIsThere) {
    TemporaryDirectory const directory;
    std::filesystem::create_directory(directory.Native("sub"));
    std::filesystem::create_symlink("sub", directory.Native("to-sub"));
    std::filesystem::create_symlink("nowhere", directory.Native("new2.txt"));
    std::ofstream(directory.Native(".hidden")) << "x";
    auto const fresh = [&] {
        return FileUtils::UniqueFileName(directory.Path(), u"new"_utf16, u".txt"_utf16);
    };
    auto const first = directory.Path(u"new1.txt"_utf16);
    EXPECT_EQ(fresh(), first);
    FileUtils::CreateNewFile(first);
    EXPECT_EQ(fresh(), directory.Path(u"new3.txt"_utf16));

    std::vector<UTF16String> paths{u"before"_utf16};
    FileUtils::ContainedFiles(directory.Path(), paths);
    FileUtils::ContainedFiles(directory.Path(u"none"_utf16), paths);
    std::sort(paths.begin() + 1, paths.end());
    EXPECT_EQ(paths, (std::vector<UTF16String>{u"before"_utf16, first,
                                               directory.Path(u"new2.txt"_utf16)}));
}

TEST(FileUtils, ShortcutsResolveOrTellWhyNot) {
    TemporaryDirectory const directory;
    auto const link = directory.Path(u"link.lnk"_utf16);
    auto path = link;
    bool isDirectory = false;
    EXPECT_EQ(FileUtils::ResolveIT(path, isDirectory), static_cast<std::int32_t>(0x80070002U));
    EXPECT_EQ(path, link);
    EXPECT_EQ(FileUtils::CreateLink(directory.Path(), link, u"here"_utf16), 0);
    EXPECT_EQ(FileUtils::ResolveIT(path, isDirectory), 0);
    EXPECT_EQ(path, directory.Path());
    EXPECT_TRUE(isDirectory);
    EXPECT_LT(FileUtils::CreateLink(path, directory.Path(u"none\\link.lnk"_utf16), {}), 0);
}

} // namespace

} // namespace brindle::utility
