#include "platform/ShellLink.h"
#include "platform/Files.h"
#include "platform/posix/DesktopEntry.h"

#include "tests/InTemporaryDirectory.h"

namespace brindle::platform {

namespace {

using ShellLink = tests::InTemporaryDirectory;

TEST_F(ShellLink, AnyTargetComesBack) {
    auto const link = At("a link.lnk");
    for (std::string const name : {"plain", " 100% \xC3\xA9?#[x]\n", "\xFF\xEF\x81\x9C", "C:x"}) {
        auto const target = At(name);
        ASSERT_EQ(WriteShellLink(target, link, u" de\\scription\n"_utf16), kError_None);
        EXPECT_EQ(ReadShellLink(link).error, kError_FileNotFound);
        ASSERT_EQ(CreateEmptyFile(target), kError_None);
        auto const read = ReadShellLink(link);
        EXPECT_EQ(NativePath(read.value.path).value, NativePath(target).value);
        EXPECT_FALSE(read.value.isDirectory);
    }
    ASSERT_EQ(WriteShellLink(mTemporary.Path(), link, {}), kError_None);
    EXPECT_EQ(WriteShellLink(u"Q:\\x"_utf16, link, {}), kError_PathNotFound);
    EXPECT_EQ(WriteShellLink(u"a\0"_utf16, link, {}), kError_InvalidName);
    EXPECT_EQ(WriteShellLink({}, link, {}), kError_PathNotFound);
    EXPECT_TRUE(ReadShellLink(link).value.isDirectory);

    Fill("big.lnk", "[Desktop Entry]\nType=Link\nURL=/\n#" + std::string(65536, 'x'));
    EXPECT_EQ(ReadShellLink(At("big.lnk")).error, kError_InvalidData);
}

TEST_F(ShellLink, EntriesOfOtherProgramsAreReadOrRefused) {
    std::string const start = "[Desktop Entry]\nType=Link\nURL=";
    std::pair<std::string, std::string> const cases[] = {
        {start + "file:///a%20b\n", "/a b"},
        {"\xEF\xBB\xBF# note\r\n[Desktop Entry]\r\nURL = FILE://LocalHost/a\r\nType = Link", "/a"},
        {start + "file:/a%2fb", "/a/b"},
        {start + "/a%20\\s\\\\\\q", "/a%20 \\\\q"},
        {start + "/a\nURL[de]=/b\n[Other]\nURL=/c", "/a"},
        // What follows is refused.
        {"[Desktop Entry]\nType=Application\nURL=/a", ""},
        {"[Other]\nType=Link\nURL=/a", ""},
        {"[Desktop Entry]\nType=Link\n", ""},
        {start + "file://elsewhere/a", ""},
        {start + "file://localhost", ""},
        {start + "https://localhost/a", ""},
        {start + "a/b", ""},
        {start + "file:///a%0", ""},
        {start + "file:///a%00", ""},
        {start + "file:///a%g0", ""},
        {"", ""},
    };
    for (auto const& [entry, path] : cases) {
        auto const link = ParseDesktopLink(entry);
        EXPECT_EQ(link.error, path.empty() ? kError_InvalidData : kError_None) << entry;
        EXPECT_EQ(link.value.path, path) << entry;
    }
    auto const link = ParseDesktopLink(FormatDesktopLink({"/a", " n ", "\t\\c\r\n"}));
    EXPECT_EQ(link.value.name, " n ");
    EXPECT_EQ(link.value.comment, "\t\\c\r\n");
}

} // namespace

} // namespace brindle::platform
