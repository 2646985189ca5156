#include <brindle/utility/PlatformBridges.h>

#include <brindle/filesupport/File.h>
#include <brindle/filesupport/NativePath.h>

#include "tests/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>

namespace brindle::utility {

namespace {

namespace fs = std::filesystem;

TEST(PlatformBridges, RectanglesAreCornersThereAndExtentsHere) {
    auto const rect = WINtoBRN(tagRECT{10, 20, 30, 50});
    EXPECT_EQ((geom::RectT<std::int32_t>{10, 20, 20, 30}), rect);
    auto const back = BRNtoWIN(rect);
    EXPECT_TRUE(back.left == 10 && back.top == 20 && back.right == 30 && back.bottom == 50);
    constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
    geom::RectT<std::int32_t> const beyond{kMost, -kMost, kMost, -kMost};
    EXPECT_EQ(beyond, WINtoBRN(BRNtoWIN(beyond)));
    geom::PointT<std::int32_t> const point{-1, kMost};
    EXPECT_EQ(point, WINtoBRN(BRNtoWIN(point)));
}

/// A desktop of its own below a temporary directory, by the variables that tell where it is.
class FindAppFromExtension : public testing::Test {
protected:
    FindAppFromExtension() {
        Set("HOME", "");
        Set("XDG_CONFIG_HOME", "/config");
        Set("XDG_CONFIG_DIRS", "/etc");
        Set("XDG_DATA_HOME", "/own");
        ::setenv("XDG_DATA_DIRS", (At("/low") + ":relative::" + At("/lowest")).c_str(), 1);
        ::setenv("PATH", (":" + At("/bin")).c_str(), 1);
        ::setenv("XDG_CURRENT_DESKTOP", "Some:OTHER", 1);
        for (std::string const name : {"a", "b", "c", "d", "e", "100%", "two words"}) {
            Write("/bin/" + name, "");
            fs::permissions(At("/bin/" + name), fs::perms::owner_all);
        }
        for (std::string const name : {"a", "b", "c", "d", "e"}) {
            Entry("/low", name, name + " %U");
        }
        Write("/low/mime/globs2", "# comment\n50:text/x:*.x\n50:text/big:*.X:cs\n"
                                  "50:application/gz:*.gz\n50:text/x-gz:*.x.gz\n10:text/weak:*.w\n"
                                  "60:text/strong:*.w\n50:text/gone:*.gone\nnonsense:\n:::");
    }
    ~FindAppFromExtension() override {
        for (auto const& [name, value] : mEnvironment) {
            value.first ? ::setenv(name, value.second.c_str(), 1) : ::unsetenv(name);
        }
    }
    std::string At(std::string const& inPath) const { return mDirectory.Native() + inPath; }

    void Set(char const* inName, std::string const& inPath) {
        ::setenv(inName, At(inPath).c_str(), 1);
    }

    void Write(std::string const& inPath, std::string const& inContent) {
        fs::create_directories(fs::path(At(inPath)).parent_path());
        std::ofstream(At(inPath), std::ios::binary) << inContent;
    }

    void Entry(std::string const& inData, std::string const& inName, std::string const& inCommand) {
        Write(inData + "/applications/" + inName + ".desktop",
              "[Desktop Entry]\nType=Application\nExec=" + inCommand + "\n");
    }

    /// The name of the program, "-" if the argument stays as it was.
    std::string Find(std::string const& inExtension) {
        filesupport::File const before(u"C:\\before"_utf16);
        filesupport::File app = before;
        utility::FindAppFromExtension(UTF16String(inExtension.begin(), inExtension.end()), app);
        std::string const path = NativePath(app);
        return app == before
                   ? "-"
                   : path.substr(path.rfind(At("/bin/"), 0) == 0 ? At("/bin/").size() : 0);
    }

    tests::TemporaryDirectory mDirectory;

private:
    static std::pair<char const*, std::pair<bool, std::string>> Saved(char const* inName) {
        char const* const value = std::getenv(inName);
        return {inName, {value != nullptr, value != nullptr ? value : ""}};
    }
    std::vector<std::pair<char const*, std::pair<bool, std::string>>> mEnvironment = {
        Saved("HOME"),
        Saved("XDG_CONFIG_HOME"),
        Saved("XDG_CONFIG_DIRS"),
        Saved("XDG_DATA_HOME"),
        Saved("XDG_DATA_DIRS"),
        Saved("PATH"),
        Saved("XDG_CURRENT_DESKTOP")};
};

TEST_F(FindAppFromExtension, TheMostPreferredOfTheInstalledIsTaken) {
    EXPECT_EQ("-", Find(".x"));
    std::string const cache = "[MIME Cache]\ntext/x=missing.desktop;a.desktop;\n";
    Write("/lowest/applications/mimeinfo.cache", cache);
    EXPECT_EQ("a", Find(".x"));
    Write("/low/applications/mimeapps.list", "[Added Associations]\ntext/x=b.desktop\n");
    EXPECT_EQ("b", Find(".x"));
    Write("/config/mimeapps.list", "[Removed Associations]\ntext/x=b.desktop;\n");
    EXPECT_EQ("a", Find(".x"));
    Write("/etc/mimeapps.list", "[Default Applications]\ntext/x=missing.desktop;c.desktop\n");
    EXPECT_EQ("c", Find(".x"));
    Write("/config/other-mimeapps.list", "[Default Applications]\ntext/x=../d.desktop;d.desktop\n");
    EXPECT_EQ("d", Find(".x"));
    Write("/own/applications/d.desktop", "[Desktop Entry]\nType=Application\nHidden=true\nExec=d");
    EXPECT_EQ("c", Find(".x")) << "the user's own entry hides that of the system";
    Write("/config/other-mimeapps.list", std::string(9 << 20, '\n') + "[Default Applications]\n"
                                                                      "text/x=e.desktop\n");
    EXPECT_EQ("c", Find(".x")) << "no list is that large";
    fs::permissions(At("/bin/c"), fs::perms::owner_read);
    EXPECT_EQ("a", Find(".x")) << "what may not be executed is not installed";
}

TEST_F(FindAppFromExtension, ThePatternOfTheGreatestWeightThenLengthThenCaseDecides) {
    Write("/config/mimeapps.list",
          "[Default Applications]\ntext/x=a.desktop\ntext/big=b.desktop\n"
          "application/gz=c.desktop\ntext/x-gz=d.desktop\ntext/weak=a.desktop\n"
          "text/strong=e.desktop\ntext/gone=a.desktop\n");
    struct {
        char const *extension, *program;
    } const rows[] = {{".x", "a"}, {".X", "b"},  {".gz", "c"},   {".x.gz", "d"}, {".X.GZ", "d"},
                      {".w", "e"}, {".W", "e"},  {".gone", "a"}, {"x", "-"},     {"", "-"},
                      {".", "-"},  {".xx", "-"}, {".y.gz", "c"}};
    for (auto const& row : rows) {
        EXPECT_EQ(row.program, Find(row.extension)) << row.extension;
    }
    Write("/own/mime/globs2", "0:text/gone:__NOGLOBS__\n");
    EXPECT_EQ("-", Find(".gone"));
    Write("/config/mimeapps.list", "[Default Applications]\napplication/gz=c.desktop\n");
    EXPECT_EQ("c", Find(".x.gz")) << "a lesser type serves where the best has no application";
}

TEST_F(FindAppFromExtension, TheCommandsFirstWordIsTheProgram) {
    Write("/config/mimeapps.list", "[Default Applications]\ntext/x=ven-dor-one.desktop\n");
    struct {
        std::string command, program;
    } const rows[] = {
        {"a", "a"},
        {"  a", "a"},
        {"100%% %f", "100%"},
        {"\"two words\" --x", "two words"},
        {"\"two\\\\ words\"", "two words"},
        {"two\\swords", "-"},
        {"\"a", "-"},
        {"%f", "-"},
        {"", "-"},
        {"missing", "-"},
        {"./a", "-"},
        {At("/bin/b") + " %F", "b"},
        {At("/bin"), "-"},
        {"a\nTryExec=missing", "-"},
        {"a\nTryExec=b", "a"},
        {"a\nType=Link", "-"},
    };
    for (auto const& row : rows) {
        Entry("/low", "ven/dor-one", row.command);
        EXPECT_EQ(row.program, Find(".x")) << row.command;
    }
}

} // namespace

} // namespace brindle::utility
