#include "platform/KnownFolders.h"

#include "platform/Directories.h"
#include "platform/FileContent.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "platform/Process.h"
#include "platform/desktop/UserDirectories.h"

#include <brindle/utility/UTF8Sequence.h>

#include <cstdlib>
#include <initializer_list>
#include <string>
#include <string_view>

namespace brindle::platform {

namespace {

bool IsUTF8(std::string_view inText) noexcept {
    while (!inText.empty()) {
        auto const sequence = utility::DecodeUTF8Sequence(inText.data(), inText.size());
        bool const isSurrogate = (sequence.value & 0xFFFFF800) == 0xD800;
        if (sequence.length == 0 || isSurrogate) {
            return false;
        }
        inText.remove_prefix(sequence.length);
    }
    return true;
}

/// The path if it can be that of a setting, otherwise an empty one.
std::string UsablePath(std::string const& inPath) {
    return inPath.substr(0, 1) == "/" && IsUTF8(inPath) ? inPath : std::string();
}

std::string PathVariable(char const* inName) {
    char const* const value = std::getenv(inName);
    return value != nullptr ? UsablePath(value) : std::string();
}

bool IsDirectory(std::string const& inNative) {
    auto const info = Inspect(PathFromNative(inNative));
    return info && info.value.kind == FileKind::kDirectory;
}

/// Creates what is missing of a directory and of its parents, for the user alone.
void CreateForUser(std::string const& inNative) {
    for (std::size_t end = 0; end != std::string::npos;) {
        end = inNative.find('/', end + 1);
        // A failure, such as that the level exists, shows in the end.
        static_cast<void>(
            CreateDirectory(PathFromNative(inNative.substr(0, end)), Readers::kOwner));
    }
}

enum class IfMissing { kCreate, kSkip };

/// The first directory that exists or, with `kCreate`, can be created; empty paths are skipped.
std::string FirstDirectory(std::initializer_list<std::string> inPaths, IfMissing inIfMissing) {
    for (auto const& path : inPaths) {
        if (path.empty()) {
            continue;
        }
        if (IsDirectory(path)) {
            return path;
        }
        if (inIfMissing == IfMissing::kCreate) {
            CreateForUser(path);
            if (IsDirectory(path)) {
                return path;
            }
        }
    }
    return {};
}

/// Empty if the user has none. A home is never created.
std::string Home() {
    return FirstDirectory({PathVariable("HOME"), AccountHome().value}, IfMissing::kSkip);
}

std::string BelowHome(char const* inName) {
    auto const home = Home();
    return home.empty() ? home : home + inName;
}

std::string Settings(IfMissing inIfMissing) {
    return FirstDirectory({PathVariable("XDG_CONFIG_HOME"), BelowHome("/.config")}, inIfMissing);
}

/// A directory that the user can name in "user-dirs.dirs".
std::string UserFolder(char const* inKey, char const* inBelowHome) {
    constexpr std::size_t kMostBytes = 64 * 1024;
    auto const settings = Settings(IfMissing::kSkip);
    auto const content =
        settings.empty()
            ? std::string()
            : ReadContent(PathFromNative(settings + "/user-dirs.dirs"), kMostBytes).value;
    return FirstDirectory({UsablePath(UserDirectory(content, inKey, Home())), PathVariable(inKey),
                           BelowHome(inBelowHome)},
                          IfMissing::kCreate);
}

/// A directory of programs, which a variable may name.
std::string ProgramsFolder(char const* inVariable, char const* inBelowHome) {
    return FirstDirectory({PathVariable(inVariable), BelowHome(inBelowHome)}, IfMissing::kCreate);
}

std::string NativeFolder(KnownFolder inFolder) {
    switch (inFolder) {
    case KnownFolder::kApplicationData:
        return Settings(IfMissing::kCreate);
    case KnownFolder::kDocuments:
        return UserFolder("XDG_DOCUMENTS_DIR", "/Documents");
    case KnownFolder::kHome:
        return Home();
    case KnownFolder::kPictures:
        return UserFolder("XDG_PICTURES_DIR", "/Pictures");
    case KnownFolder::kMusic:
        return UserFolder("XDG_MUSIC_DIR", "/Music");
    case KnownFolder::kVideos:
        return UserFolder("XDG_VIDEOS_DIR", "/Videos");
    case KnownFolder::kDownloads:
        return UserFolder("XDG_DOWNLOAD_DIR", "/Downloads");
    case KnownFolder::kDesktop:
        return UserFolder("XDG_DESKTOP_DIR", "/Desktop");
    case KnownFolder::kCache:
        return ProgramsFolder("XDG_CACHE_HOME", "/.cache");
    case KnownFolder::kState:
        return ProgramsFolder("XDG_STATE_HOME", "/.local/state");
    case KnownFolder::kData:
        return ProgramsFolder("XDG_DATA_HOME", "/.local/share");
    case KnownFolder::kTemporary:
        return FirstDirectory({PathVariable("TMPDIR"), "/tmp"}, IfMissing::kSkip);
    case KnownFolder::kProgramFiles:
        return FirstDirectory({BRINDLE_PROGRAM_FILES_DIR}, IfMissing::kSkip);
    case KnownFolder::kCommonFiles:
        return FirstDirectory({BRINDLE_COMMON_FILES_DIR}, IfMissing::kSkip);
    }
    return {};
}

} // namespace

Result<UTF16String> FindKnownFolder(KnownFolder inFolder) {
    auto folder = NativeFolder(inFolder);
    if (folder.empty()) {
        return {{}, kError_PathNotFound};
    }
    while (folder.size() > 1 && folder.back() == '/') {
        folder.pop_back();
    }
    return {PathFromNative(folder), kError_None};
}

} // namespace brindle::platform
