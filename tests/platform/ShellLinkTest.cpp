#include "platform/ShellLink.h"
#include "platform/desktop/DesktopEntry.h"

#include "tests/support/InTemporaryDirectory.h"

namespace brindle::platform {

using ShellLink = tests::InTemporaryDirectory;

TEST_F(ShellLink, EntriesOfOtherProgramsAreReadOrRefused) {
    std::string const start = "[Desktop Entry]\nType=Link\nURL=";
    std::pair<std::string, std::string> const cases[] = {
        {start + "file:///a%20b\n", "/a b"},
        {"\xEF\xBB\xBF# note\r\n[Desktop Entry]\r\nURL = FILE://LocalHost/a\r\nType = Link", "/a"},
        {start + "/a%20\\s\\\\\\q", "/a%20 \\\\q"},
        {start + "/a\nURL[de]=/b\n[Other]\nURL=/c", "/a"},
        // What follows is refused.
        {"[Other]\nType=Link\nURL=/a", ""},
        {start + "file://elsewhere/a", ""},
        {start + "a/b", ""},
        {start + "file:///a%0", ""},
        {start + "file:///a%00", ""},
        {start + "file:///a%g0", ""},
    };
    for (auto const& [entry, path] : cases) {
        auto const link = ParseDesktopLink(entry);
        EXPECT_EQ(link.error, path.empty() ? kError_InvalidData : kError_None) << entry;
        EXPECT_EQ(link.value.path, path) << entry;
    }
    std::string const path = "/ 100% \xC3\xA9?#[x]\n\xFF";
    auto const link = ParseDesktopLink(FormatDesktopLink({path, " n ", "\t\\c\r\n"}));
    EXPECT_EQ(link.value.path, path);
    EXPECT_EQ(link.value.name, " n ");
    EXPECT_EQ(link.value.comment, "\t\\c\r\n");
    Fill("big.lnk", start + "/\n#" + std::string(65536, 'x'));
    EXPECT_EQ(ReadShellLink(At("big.lnk")).error, kError_InvalidData);
}

} // namespace brindle::platform
