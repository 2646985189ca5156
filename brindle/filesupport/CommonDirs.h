#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/Dir.h>
#include <brindle/filesupport/File.h>

/// The directories of the application, which a host may replace at its start-up:
///
///     commondirs::SetResourcesDirOverride(Dir(u"/usr/share/player"_utf16));
///     File const icon(commondirs::ResourcesDir(), u"icon.png"_utf16);
///
/// Each directory is found at its first use and kept from then on. An override wins at any time,
/// but a directory that was derived from another one before does not follow. An override with an
/// empty path removes what is kept, and the next call finds the default again. Nothing here throws,
/// except for a lack of memory: what cannot be found is empty, and is looked for again at the next
/// call. Any thread may call, also in the constructors and destructors of static objects. The
/// directories of the user and of the system are static members of `Dir`.
namespace brindle::filesupport::commondirs {

/// The program that the process runs.
[[nodiscard]] BRN_API File MainExecutableFile();
BRN_API void SetMainExecutableOverride(File const& inFile);

/// `Dir::AppDir` by default, as is `ResourcesDir`.
[[nodiscard]] BRN_API Dir ExecutableDir();
BRN_API void SetExecutableDirOverride(Dir const& inDir);

/// `Dir::AppDir` by default: what the program reads but does not run.
[[nodiscard]] BRN_API Dir ResourcesDir();
BRN_API void SetResourcesDirOverride(Dir const& inDir);

/// "Plug-ins" in `Dir::AppDir` by default.
[[nodiscard]] BRN_API Dir PluginsDir();
BRN_API void SetPluginsDirOverride(Dir const& inDir);

/// "Required" in `Dir::AppDir` by default.
[[nodiscard]] BRN_API Dir RequiredPluginsDir();
BRN_API void SetRequiredPluginsDirOverride(Dir const& inDir);

/// The plug-ins that are installed for all applications of the family, in the directory of program
/// files that the library was built with. Empty while that directory does not exist.
[[nodiscard]] BRN_API Dir AllUserPluginsDir();
/// The same directory.
[[nodiscard]] BRN_API Dir UserPluginsDir();

/// Replace `Dir::AppDir` and `Dir::PackageDir`, which are the same.
BRN_API void SetAppDirOverride(Dir const& inDir);
BRN_API void SetPackageDirOverride(Dir const& inDir);

} // namespace brindle::filesupport::commondirs
