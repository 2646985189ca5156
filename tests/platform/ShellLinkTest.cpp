#include "platform/ShellLink.h"
#include "platform/Directories.h"
#include "platform/Files.h"
#include "platform/posix/DesktopEntry.h"

#include "tests/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <fstream>

namespace brindle::platform {

namespace {

using tests::TemporaryDirectory;

TEST(ShellLink, AnyTargetComesBack) {
    TemporaryDirectory const directory;
    auto const link = directory.Path(u"a link.lnk"_utf16);
    for (auto const& name : {u"plain"_utf16, u" 100% \u00E9?#[x]\n"_utf16,
                             UTF16String{0xF05C, 0xDCFF}, u"C:x"_utf16}) {
        auto const target = directory.Path(name);
        ASSERT_EQ(WriteShellLink(target, link, u" de\\scription\n"_utf16), kError_None);
        EXPECT_EQ(ReadShellLink(link).error, kError_FileNotFound);
        ASSERT_EQ(CreateEmptyFile(target), kError_None);
        auto const read = ReadShellLink(link);
        EXPECT_EQ(read.error, kError_None);
        EXPECT_EQ(read.value.path, target);
        EXPECT_FALSE(read.value.isDirectory);
    }
    ASSERT_EQ(WriteShellLink(directory.Path(), link, {}), kError_None);
    EXPECT_TRUE(ReadShellLink(link).value.isDirectory);
    EXPECT_EQ(WriteShellLink(u"Q:\\x"_utf16, link, {}), kError_PathNotFound);
    EXPECT_EQ(WriteShellLink(u"a\0"_utf16, link, {}), kError_InvalidName);
    EXPECT_TRUE(ReadShellLink(link).value.isDirectory);

    std::ofstream(directory.Native("big.lnk"))
        << "[Desktop Entry]\nType=Link\nURL=/\n#" << std::string(65536, 'x');
    EXPECT_EQ(ReadShellLink(directory.Path(u"big.lnk"_utf16)).error, kError_InvalidData);
}

TEST(ShellLink, EntriesOfOtherProgramsAreReadOrRefused) {
    struct Case {
        std::string entry;
        std::string path; // empty: refused
    };
    Case const cases[] = {
        {"[Desktop Entry]\nType=Link\nURL=file:///a%20b\n", "/a b"},
        {"\xEF\xBB\xBF# note\r\n[Desktop Entry]\r\nURL = FILE://LocalHost/a\r\nType = Link", "/a"},
        {"[Desktop Entry]\nType=Link\nURL=file:/a%2fb", "/a/b"},
        {"[Desktop Entry]\nType=Link\nURL=/a%20\\s\\\\\\q", "/a%20 \\\\q"},
        {"[Desktop Entry]\nType=Link\nURL[de]=/b\nURL=/a\n[Other]\nURL=/c", "/a"},
        {"[Desktop Entry]\nType=Application\nURL=/a", ""},
        {"[Other]\nType=Link\nURL=/a", ""},
        {"[Desktop Entry]\nType=Link\n", ""},
        {"[Desktop Entry]\nType=Link\nURL=file://elsewhere/a", ""},
        {"[Desktop Entry]\nType=Link\nURL=file://localhost", ""},
        {"[Desktop Entry]\nType=Link\nURL=https://localhost/a", ""},
        {"[Desktop Entry]\nType=Link\nURL=a/b", ""},
        {"[Desktop Entry]\nType=Link\nURL=file:///a%0", ""},
        {"[Desktop Entry]\nType=Link\nURL=file:///a%00", ""},
        {"[Desktop Entry]\nType=Link\nURL=file:///a%g0", ""},
        {"", ""},
    };
    for (auto const& one : cases) {
        auto const link = ParseDesktopLink(one.entry);
        EXPECT_EQ(link.error, one.path.empty() ? kError_InvalidData : kError_None) << one.entry;
        EXPECT_EQ(link.value.path, one.path) << one.entry;
    }
    auto const link = ParseDesktopLink(FormatDesktopLink({"/a", " n ", "\t\\c\r\n"}));
    EXPECT_EQ(link.value.name, " n ");
    EXPECT_EQ(link.value.comment, "\t\\c\r\n");
}

} // namespace

} // namespace brindle::platform
