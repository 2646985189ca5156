#include <brindle/filesupport/CommonDirs.h>

#include "filesupport/src/commondirs/CachedPath.h"
#include "platform/Directories.h"
#include "platform/KnownFolders.h"
#include "platform/Process.h"
#include "utility/src/base/NeverDestroyed.h"

#include <brindle/config/ClientIdentity.h>
#include <brindle/filesupport/FileExceptions.h>

namespace brindle::filesupport {

namespace {

struct Caches {
    CachedPath<UTF16String> application;
    CachedPath<Dir> executables;
    CachedPath<Dir> resources;
    CachedPath<Dir> plugins;
    CachedPath<Dir> requiredPlugins;
    CachedPath<Dir> allUserPlugins;
    CachedPath<Dir> userPlugins;
    CachedPath<File> mainExecutable;
};

Caches& Cached() {
    static utility::NeverDestroyed<Caches> caches;
    return caches.Get();
}

UTF16String DirectoryOfExecutable() {
    return File(platform::ExecutablePath().value).Parent().FullPath();
}

/// Empty if the application's directory is not known.
Dir InAppDir(UTF16String const& inName) {
    Dir const application = Dir::AppDir();
    return application.FullPath().empty() ? application : Dir(application, inName);
}

Dir FolderOrAppDir(platform::KnownFolder inFolder) {
    auto const folder = platform::FindKnownFolder(inFolder);
    return folder ? Dir(folder.value) : Dir::AppDir();
}

/// Creates a directory that nobody but the user may enter, if it does not exist.
void CreateForUser(Dir const& inDir) {
    auto const error = platform::CreateDirectory(inDir.FullPath(), platform::Readers::kOwner);
    if (error != platform::kError_None && error != platform::kError_AlreadyExists) {
        throw config::Because(dir_exception(inDir), config::FileOperation::kCreate, error);
    }
}

} // namespace

Dir Dir::AppDir() {
    return Dir(Cached().application.GetOrFind(&DirectoryOfExecutable));
}

Dir Dir::PackageDir() {
    return AppDir();
}

Dir Dir::TempDir() {
    return FolderOrAppDir(platform::KnownFolder::kTemporary);
}

Dir Dir::GlobalPrefDir() {
    return FolderOrAppDir(platform::KnownFolder::kApplicationData);
}

Dir Dir::PrefDir() {
    Dir dir = GlobalPrefDir();
    if (dir.FullPath().empty()) {
        throw config::Because(dir_exception(dir), config::FileOperation::kCreate,
                              platform::kError_PathNotFound);
    }
    for (UTF16String const* const name : {&config::GetCompanyName(), &config::GetClientName(),
                                          &config::GetClientInternalVersion()}) {
        dir = Dir(dir, *name);
        CreateForUser(dir);
    }
    return dir;
}

Dir Dir::UserDocsDir() {
    return FolderOrAppDir(platform::KnownFolder::kDocuments);
}

Dir Dir::CommonFilesDir() {
    return FolderOrAppDir(platform::KnownFolder::kCommonFiles);
}

namespace commondirs {

File MainExecutableFile() {
    return Cached().mainExecutable.GetOrFind([] { return File(platform::ExecutablePath().value); });
}

void SetMainExecutableOverride(File const& inFile) {
    Cached().mainExecutable.Set(inFile);
}

Dir ExecutableDir() {
    return Cached().executables.GetOrFind(&Dir::AppDir);
}

void SetExecutableDirOverride(Dir const& inDir) {
    Cached().executables.Set(inDir);
}

Dir ResourcesDir() {
    return Cached().resources.GetOrFind(&Dir::AppDir);
}

void SetResourcesDirOverride(Dir const& inDir) {
    Cached().resources.Set(inDir);
}

Dir PluginsDir() {
    return Cached().plugins.GetOrFind([] { return InAppDir(u"Plug-ins"_utf16); });
}

void SetPluginsDirOverride(Dir const& inDir) {
    Cached().plugins.Set(inDir);
}

Dir RequiredPluginsDir() {
    return Cached().requiredPlugins.GetOrFind([] { return InAppDir(u"Required"_utf16); });
}

void SetRequiredPluginsDirOverride(Dir const& inDir) {
    Cached().requiredPlugins.Set(inDir);
}

Dir AllUserPluginsDir() {
    return Cached().allUserPlugins.GetOrFind([] {
        auto const folder = platform::FindKnownFolder(platform::KnownFolder::kProgramFiles);
        return folder ? Dir(folder.value + u"/Tallow/Common/Plug-ins"_utf16) : Dir();
    });
}

Dir UserPluginsDir() {
    return Cached().userPlugins.GetOrFind(&AllUserPluginsDir);
}

void SetAppDirOverride(Dir const& inDir) {
    Cached().application.Set(inDir.FullPath());
}

void SetPackageDirOverride(Dir const& inDir) {
    SetAppDirOverride(inDir);
}

} // namespace commondirs

} // namespace brindle::filesupport
