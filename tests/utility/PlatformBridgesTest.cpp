#include <brindle/utility/PlatformBridges.h>

#include <brindle/filesupport/File.h>
#include <brindle/filesupport/NativePath.h>

#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <fstream>
#include <limits>

namespace brindle::utility {

namespace {

namespace fs = std::filesystem;

TEST(PlatformBridges, RectanglesAreCornersThereAndExtentsHere) {
    auto const corners = BRNtoWIN(geom::RectT<std::int32_t>{10, 20, 20, 30});
    EXPECT_EQ(corners.right, 30);
    EXPECT_EQ(corners.bottom, 50);
    constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
    geom::RectT<std::int32_t> const beyond{kMost, -kMost, kMost, -kMost};
    EXPECT_EQ(WINtoBRN(BRNtoWIN(beyond)), beyond);
}

/// A desktop below a temporary directory, to which the environment variables lead.
class FindApp : public testing::Test {
protected:
    FindApp() {
        for (auto const& [name, value] : {std::pair{"XDG_CONFIG_HOME", At("/config")},
                                          {"XDG_CONFIG_DIRS", At("/etc")},
                                          {"XDG_DATA_HOME", At("/own")},
                                          {"XDG_DATA_DIRS", At("/low:relative::") + At("/lowest")},
                                          {"PATH", ":" + At("/bin")},
                                          {"XDG_CURRENT_DESKTOP", "Some:OTHER"}}) {
            ::setenv(name, value.c_str(), 1);
        }
        for (std::string const name : {"a", "b", "c", "d", "100%", "two words"}) {
            Write("/bin/" + name, "");
            fs::permissions(At("/bin/" + name), fs::perms::owner_all);
            Entry(name, name);
        }
        Write("/low/mime/globs2",
              "# comment\n50:text/x:*.x\n50:text/big:*.X:cs\n50:text/gz:*.gz\n"
              "50:text/x-gz:*.x.gz\n10:text/x:*.v.w\n60:text/big:*.w\n9:text/x:*.Q:cs\n:::\n9:");
    }
    std::string At(std::string const& inPath) const { return mDirectory.Native() + inPath; }

    void Write(std::string const& inPath, std::string const& inContent) {
        fs::create_directories(fs::path(At(inPath)).parent_path());
        std::ofstream(At(inPath), std::ios::binary) << inContent;
    }

    void Entry(std::string const& inName, std::string const& inCommand) {
        Write("/low/applications/" + inName + ".desktop",
              "[Desktop Entry]\nType=Application\nExec=" + inCommand + "\n");
    }

    /// The name of the program; "before" if the argument is left alone.
    static std::string Find(std::string const& inExtension) {
        filesupport::File app(u"C:\\before"_utf16);
        FindAppFromExtension(UTF16String(inExtension.begin(), inExtension.end()), app);
        return fs::path(NativePath(app)).filename();
    }

    tests::TemporaryDirectory const mDirectory;
};

TEST_F(FindApp, TakesTheMostPreferredOfTheInstalled) {
    struct {
        std::string file, content, program;
    } const steps[] = {
        {"/lowest/applications/mimeinfo.cache", "[MIME Cache]\ntext/x=z.desktop;a.desktop", "a"},
        {"/low/applications/mimeapps.list", "[Added Associations]\ntext/x=b.desktop", "b"},
        {"/config/mimeapps.list", "[Removed Associations]\ntext/x=b.desktop;", "a"},
        {"/etc/mimeapps.list", "[Default Applications]\ntext/x=z.desktop;c.desktop", "c"},
        {"/config/other-mimeapps.list", "[Default Applications]\ntext/x=d.desktop", "d"},
        {"/own/applications/d.desktop", "[Desktop Entry]\nType=Application\nHidden=true\nExec=d",
         "c"},
        {"/config/other-mimeapps.list",
         "[Default Applications]\ntext/x=b.desktop\n" + std::string(9 << 20, '\n'), "c"},
    };
    for (auto const& step : steps) {
        Write(step.file, step.content);
        EXPECT_EQ(Find(".x"), step.program) << step.file;
    }
    fs::permissions(At("/bin/c"), fs::perms::owner_read);
    EXPECT_EQ(Find(".x"), "a") << "what may not be executed is not installed";
}

TEST_F(FindApp, WeightThenLengthThenCaseOfThePatternDecide) {
    Write("/config/mimeapps.list", "[Default Applications]\ntext/x=a.desktop\ntext/big=b.desktop\n"
                                   "text/gz=c.desktop\ntext/x-gz=d.desktop\n");
    std::pair<char const*, char const*> const rows[] = {
        {".x", "a"},    {".X", "b"},   {".x.gz", "d"},   {".X.GZ", "d"},
        {".y.gz", "c"}, {".v.w", "b"}, {".q", "before"}, {"x", "before"}};
    for (auto const& [extension, program] : rows) {
        EXPECT_EQ(Find(extension), program) << extension;
    }
    Write("/own/mime/globs2", "0:text/x-gz:__NOGLOBS__\n");
    EXPECT_EQ(Find(".x.gz"), "c");
}

TEST_F(FindApp, TheCommandsFirstWordIsTheProgram) {
    Write("/config/mimeapps.list", "[Default Applications]\ntext/x=ven-dor-one.desktop\n");
    std::pair<std::string, char const*> const rows[] = {{"  a", "a"},
                                                        {"100%% %f", "100%"},
                                                        {"\"two words\" --x", "two words"},
                                                        {"\"two\\\\ words\"", "two words"},
                                                        {"\"a", "before"},
                                                        {"missing", "before"},
                                                        {At("/bin/b"), "b"},
                                                        {"a\nTryExec=missing", "before"},
                                                        {"a\nType=Link", "before"}};
    for (auto const& [command, program] : rows) {
        Entry("ven/dor-one", command);
        EXPECT_EQ(Find(".x"), program) << command;
    }
}

} // namespace

} // namespace brindle::utility
