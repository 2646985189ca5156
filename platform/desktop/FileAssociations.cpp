#include "platform/FileAssociations.h"

#include "platform/FileContent.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "platform/TextEncoding.h"
#include "platform/desktop/DesktopEntry.h"
#include "platform/desktop/MimeTables.h"
#include "platform/portable/Ascii.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brindle::platform {

namespace {

constexpr std::size_t kMostBytesOfATable = 8 * 1024 * 1024;
constexpr std::size_t kMostBytesOfAnEntry = 256 * 1024;
constexpr std::string_view kDefaults = "Default Applications";
constexpr std::string_view kAdded = "Added Associations";
constexpr std::string_view kRemoved = "Removed Associations";
constexpr std::string_view kCache = "MIME Cache";

using Texts = std::vector<std::string>;

/// The value of an environment variable, or the default if it is not set or empty.
std::string Variable(char const* inName, std::string const& inDefault) {
    char const* const value = std::getenv(inName);
    return value != nullptr && *value != '\0' ? value : inDefault;
}

Texts SplitAtColons(std::string_view inText) {
    Texts parts;
    while (!inText.empty()) {
        auto const end = std::min(inText.find(':'), inText.size());
        parts.emplace_back(inText.substr(0, end));
        inText.remove_prefix(std::min(end + 1, inText.size()));
    }
    return parts;
}

/// The absolute paths of a list; relative ones are to be ignored.
Texts Directories(std::string const& inList) {
    Texts directories = SplitAtColons(inList);
    directories.erase(
        std::remove_if(directories.begin(), directories.end(),
                       [](std::string const& inPath) { return inPath.substr(0, 1) != "/"; }),
        directories.end());
    return directories;
}

/// The user's own directory, then those of the system, in falling precedence.
Texts BaseDirectories(char const* inOwnVariable, char const* inOwnBelowHome,
                      char const* inSystemVariable, char const* inSystemDefault) {
    std::string const home = Variable("HOME", "");
    std::string const own = Variable(inOwnVariable, home.empty() ? "" : home + inOwnBelowHome);
    Texts directories;
    if (own.substr(0, 1) == "/") {
        directories.push_back(own);
    }
    for (auto& directory : Directories(Variable(inSystemVariable, inSystemDefault))) {
        directories.push_back(std::move(directory));
    }
    return directories;
}

/// Empty where there is no such file.
std::string Content(std::string const& inNativePath, std::size_t inMost) {
    return ReadContent(PathFromNative(inNativePath), inMost).value;
}

/// The path of a program that is given by a path or by a name; empty if it does not exist.
std::string PathOfProgram(std::string const& inProgram) {
    if (inProgram.find('\0') != std::string::npos) {
        return {};
    }
    if (inProgram.find('/') != std::string::npos) {
        return inProgram.front() == '/' && IsExecutable(PathFromNative(inProgram)) ? inProgram
                                                                                   : std::string();
    }
    for (auto const& directory : Directories(Variable("PATH", "/usr/local/bin:/usr/bin:/bin"))) {
        auto path = directory + '/' + inProgram;
        if (IsExecutable(PathFromNative(path))) {
            return path;
        }
    }
    return {};
}

/// The files that may contain an entry: dashes of its name may stand for directories, from the
/// left.
Texts FileNamesOf(std::string const& inEntry) {
    constexpr std::size_t kMostNames = 5;
    Texts names{inEntry};
    auto dash = inEntry.find('-');
    while (dash != std::string::npos && names.size() < kMostNames) {
        names.push_back(names.back());
        names.back()[dash] = '/';
        dash = inEntry.find('-', dash + 1);
    }
    return names;
}

/// The path of the program that an entry starts; empty if it does not exist.
std::string InstalledProgram(std::string const& inBytes) {
    auto const application = ParseDesktopApplication(inBytes);
    if (!application) {
        return {};
    }
    auto const& witness = application.value.witness;
    bool const isThere = witness.empty() || !PathOfProgram(witness).empty();
    return isThere ? PathOfProgram(application.value.program) : std::string();
}

/// The files in which the desktop keeps its applications and associations, read once.
class Desktop {
public:
    Desktop()
        : mDataDirectories(BaseDirectories("XDG_DATA_HOME", "/.local/share", "XDG_DATA_DIRS",
                                           "/usr/local/share:/usr/share")) {
        Texts const desktops = SplitAtColons(Variable("XDG_CURRENT_DESKTOP", ""));
        for (auto const& directory :
             BaseDirectories("XDG_CONFIG_HOME", "/.config", "XDG_CONFIG_DIRS", "/etc/xdg")) {
            AddLists(directory, desktops);
        }
        for (auto const& directory : mDataDirectories) {
            AddLists(directory + "/applications", desktops);
            mCaches.push_back(
                Content(directory + "/applications/mimeinfo.cache", kMostBytesOfATable));
        }
    }

    Texts TypesOf(std::string const& inExtension) const {
        ExtensionTypes types(inExtension);
        for (auto const& directory : mDataDirectories) {
            types.Add(Content(directory + "/mime/globs2", kMostBytesOfATable));
        }
        return types.Types();
    }

    /// The names of the entries of the applications for a type, the most preferred first.
    Texts EntriesOf(std::string const& inType) const {
        Texts entries;
        for (auto const& list : mLists) {
            for (auto& name : EntriesFor(list, kDefaults, inType)) {
                entries.push_back(std::move(name));
            }
        }
        // A list can remove associations of the lists of lower precedence and of the caches.
        Texts removed;
        auto const addAssociations = [&](std::string const& inList, std::string_view inGroup) {
            for (auto& name : EntriesFor(inList, inGroup, inType)) {
                if (std::find(removed.begin(), removed.end(), name) == removed.end()) {
                    entries.push_back(std::move(name));
                }
            }
        };
        for (auto const& list : mLists) {
            addAssociations(list, kAdded);
            for (auto& name : EntriesFor(list, kRemoved, inType)) {
                removed.push_back(std::move(name));
            }
        }
        for (auto const& cache : mCaches) {
            addAssociations(cache, kCache);
        }
        return entries;
    }

    /// The program of an entry; empty if the application is not installed.
    std::string ProgramOf(std::string const& inEntry) const {
        for (auto const& directory : mDataDirectories) {
            for (auto const& name : FileNamesOf(inEntry)) {
                auto const bytes =
                    Content(directory + "/applications/" + name, kMostBytesOfAnEntry);
                if (!bytes.empty()) {
                    // The first one found hides those of lower precedence, whatever it contains.
                    return InstalledProgram(bytes);
                }
            }
        }
        return {};
    }

private:
    /// The list of a particular desktop comes before the one for all desktops.
    void AddLists(std::string const& inDirectory, Texts const& inDesktops) {
        for (auto desktop : inDesktops) {
            std::transform(desktop.begin(), desktop.end(), desktop.begin(), LowerAscii<char>);
            mLists.push_back(
                Content(inDirectory + '/' + desktop + "-mimeapps.list", kMostBytesOfATable));
        }
        mLists.push_back(Content(inDirectory + "/mimeapps.list", kMostBytesOfATable));
    }

    Texts const mDataDirectories;
    Texts mLists;
    Texts mCaches;
};

} // namespace

Result<UTF16String> FindApplication(UTF16String const& inExtension) {
    std::string const extension = ToCodePage(inExtension);
    if (extension.size() >= 2 && extension.front() == '.') {
        Desktop const desktop;
        for (auto const& type : desktop.TypesOf(extension)) {
            for (auto const& entry : desktop.EntriesOf(type)) {
                auto const program = desktop.ProgramOf(entry);
                if (!program.empty()) {
                    return {PathFromNative(program), kError_None};
                }
            }
        }
    }
    return {{}, kError_FileNotFound};
}

} // namespace brindle::platform
