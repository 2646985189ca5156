#include <brindle/filesupport/CommonDirs.h>

#include "platform/desktop/UserDirectories.h"

#include "tests/support/Environment.h"
#include "tests/support/InTemporaryDirectory.h"
#include "tests/support/InThreads.h"

#include <brindle/config/ClientIdentity.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/filesupport/UserFolders.h>

#include <sys/stat.h>
#include <utility>

namespace brindle::filesupport {

namespace {

class CommonDirs : public tests::InTemporaryDirectory {
protected:
    void SetUp() override { ::mkdir(mHome.c_str(), 0755); }
    void TearDown() override { commondirs::SetPackageDirOverride(Dir()); }

    static unsigned ModeOf(std::string const& inNative) {
        return static_cast<unsigned>(std::filesystem::status(inNative).permissions());
    }

    std::string const mHome = Native("home");
    tests::Environment const mUsual{{{"HOME", mHome},
                                     {"XDG_CONFIG_HOME", std::nullopt},
                                     {"XDG_DOCUMENTS_DIR", std::nullopt},
                                     {"TMPDIR", std::nullopt}}};
};

TEST_F(CommonDirs, SettingThatIsNoPathOfADirectoryIsPassedOver) {
    Fill("file", "");
    std::string const unusable[] = {"", "relative/x", Native("caf\xE9"), Native("file"),
                                    Native("file/x")};
    for (auto const& value : unusable) {
        tests::Environment const settings{{{"XDG_CONFIG_HOME", value}, {"TMPDIR", value}}};
        EXPECT_EQ(NativePath(Dir::GlobalPrefDir()), mHome + "/.config") << value;
        EXPECT_EQ(NativePath(Dir::TempDir()), "/tmp") << value;
    }
    tests::Environment const settings{
        {{"XDG_CONFIG_HOME", Native("a/b/c")}, {"TMPDIR", Native("home//")}}};
    EXPECT_EQ(NativePath(Dir::GlobalPrefDir()), Native("a/b/c"));
    EXPECT_EQ(ModeOf(Native("a")), 0700u) << "parents are created for the user alone as well";
    EXPECT_EQ(NativePath(Dir::TempDir()), mHome);
}

TEST_F(CommonDirs, EveryFolderOfTheUserIsFoundByItsName) {
    struct {
        UserFolder folder;
        char const *variable, *usual;
    } const rows[] = {
        {UserFolder::kHome, "HOME", ""},
        {UserFolder::kDocuments, "XDG_DOCUMENTS_DIR", "/Documents"},
        {UserFolder::kPictures, "XDG_PICTURES_DIR", "/Pictures"},
        {UserFolder::kMusic, "XDG_MUSIC_DIR", "/Music"},
        {UserFolder::kVideos, "XDG_VIDEOS_DIR", "/Videos"},
        {UserFolder::kDownloads, "XDG_DOWNLOAD_DIR", "/Downloads"},
        {UserFolder::kDesktop, "XDG_DESKTOP_DIR", "/Desktop"},
        {UserFolder::kSettings, "XDG_CONFIG_HOME", "/.config"},
        {UserFolder::kCache, "XDG_CACHE_HOME", "/.cache"},
        {UserFolder::kState, "XDG_STATE_HOME", "/.local/state"},
        {UserFolder::kData, "XDG_DATA_HOME", "/.local/share"},
    };
    ::mkdir(Native("chosen").c_str(), 0755);
    for (auto const& row : rows) {
        SCOPED_TRACE(row.variable);
        if (row.folder != UserFolder::kHome) {
            tests::Environment const usual{{{row.variable, std::nullopt}}};
            EXPECT_EQ(NativePath(FindUserFolder(row.folder)), mHome + row.usual);
        }
        tests::Environment const chosen{{{row.variable, Native("chosen")}}};
        EXPECT_EQ(NativePath(FindUserFolder(row.folder)), Native("chosen"));
    }
    EXPECT_EQ(ModeOf(mHome + "/Documents"), 0700u);
    Fill("home/.config/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n");
    EXPECT_EQ(NativePath(Dir::UserDocsDir()), mHome + "/Dokumente");
    tests::Environment const usual{{{"XDG_CACHE_HOME", std::nullopt}}};
    std::filesystem::remove_all(mHome + "/.cache");
    Fill("home/.cache", "");
    EXPECT_THROW(static_cast<void>(FindUserFolder(UserFolder::kCache)), dir_not_found_exception);
}

TEST(UserDirectory, LinesOfOtherFormsDoNotCount) {
    std::string const lines = R"(XDG_DOCUMENTS_DIR="/first"
 XDG_DOCUMENTS_DIR	= "/a \"b\\" # the last one counts
# XDG_DOCUMENTS_DIR="/comment"
XDG_DOCUMENTS_DIR_X="/x"
XDG_MUSIC_DIR="/m"
XDG_DOCUMENTS_DIR=/plain
XDG_DOCUMENTS_DIR="relative"
XDG_DOCUMENTS_DIR="$HOMEX/x"
XDG_DOCUMENTS_DIR="open)";
    std::string const name = "XDG_DOCUMENTS_DIR";
    EXPECT_EQ(platform::UserDirectory(lines, name, "/h"), "/a \"b\\");
    EXPECT_EQ(platform::UserDirectory(name + "=\"$HOME\"", name, "/h"), "/h");
    EXPECT_EQ(platform::UserDirectory(name + "=\"$HOME/d\"", name, "/h"), "/h/d");
    EXPECT_EQ(platform::UserDirectory(name + "=\"$HOME/d\"", name, ""), "");
}

TEST_F(CommonDirs, WhatTheUserCannotHaveIsTheApplicationsDirectory) {
    ::chmod(mTemporary.Native().c_str(), 0755);
    ::chmod(mHome.c_str(), 0555);
    Dir const application(At("app"));
    commondirs::SetAppDirOverride(application);
    tests::OrdinaryUser const user;
    EXPECT_EQ(Dir::GlobalPrefDir(), application);
    EXPECT_EQ(Dir::UserDocsDir(), application);
    try {
        Dir::PrefDir();
        ADD_FAILURE() << "levels below a directory that does not exist";
    } catch (dir_exception const& exception) {
        EXPECT_EQ(exception.GetDir(), Dir(application, config::GetCompanyName()));
        EXPECT_EQ(exception.Cause(), utility::SystemError::kPathNotFound);
    }
}

TEST_F(CommonDirs, PreferencesHaveThreeLevelsForTheUserAlone) {
    auto const [company, client] = std::pair(config::GetCompanyName(), config::GetClientName());
    auto const expected = mHome + "/.config/No Company Name/client/No Client Internal Version";
    config::SetClientName(u"client"_utf16);
    ::mkdir((mHome + "/.config").c_str(), 0755);
    ::mkdir((mHome + "/.config/No Company Name").c_str(), 0755);
    EXPECT_EQ(NativePath(Dir::PrefDir()), expected);
    EXPECT_EQ(ModeOf(mHome + "/.config/No Company Name/client"), 0700u);
    EXPECT_EQ(ModeOf(mHome + "/.config/No Company Name"), 0755u) << "what exists is left alone";
    config::SetCompanyName(UTF16String());
    EXPECT_EQ(NativePath(Dir::PrefDir()), mHome + "/.config/client/No Client Internal Version")
        << "an empty name is no level";
    config::SetCompanyName(company);
    config::SetClientName(client);
}

TEST_F(CommonDirs, DirectoriesAreKeptUntilTheyAreOverridden) {
    auto const executable = std::filesystem::read_symlink("/proc/self/exe");
    tests::InThreads(4, [&](unsigned) {
        EXPECT_EQ(NativePath(commondirs::MainExecutableFile()), executable.string());
        EXPECT_EQ(NativePath(commondirs::PluginsDir()), executable.parent_path() / "Plug-ins");
    });
    EXPECT_EQ(NativePath(Dir::AppDir()), executable.parent_path());
    Dir const plugins = commondirs::AllUserPluginsDir();
    bool const isKnown = !plugins.FullPath().empty();
    EXPECT_EQ(plugins.Parent().Parent().GetName(), isKnown ? u"Tallow"_utf16 : UTF16String());
    EXPECT_EQ(commondirs::UserPluginsDir(), plugins);

    Dir const first(At("first")), second(At("second"));
    commondirs::SetPackageDirOverride(first);
    EXPECT_EQ(Dir::AppDir(), first);
    EXPECT_EQ(NativePath(commondirs::PluginsDir()), executable.parent_path() / "Plug-ins")
        << "what was derived before does not follow";
    EXPECT_EQ(commondirs::RequiredPluginsDir(), Dir(first, u"Required"_utf16));
    EXPECT_EQ(commondirs::ExecutableDir(), first);
    commondirs::SetAppDirOverride(second);
    EXPECT_EQ(Dir::PackageDir(), second);
    EXPECT_EQ(commondirs::ResourcesDir(), second);

    commondirs::SetPluginsDirOverride(first);
    EXPECT_EQ(commondirs::PluginsDir(), first) << "an override wins at any time";
    commondirs::SetPluginsDirOverride(Dir());
    EXPECT_EQ(commondirs::PluginsDir(), Dir(second, u"Plug-ins"_utf16));
}

} // namespace

} // namespace brindle::filesupport
