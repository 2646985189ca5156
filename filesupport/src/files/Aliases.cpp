#include <brindle/filesupport/Aliases.h>

#include "platform/ShellLink.h"

#include <brindle/utility/FileUtils.h>

namespace brindle::filesupport {

namespace {

void MakeShortcut(File const& inShortcut, UTF16String const& inTargetPath) {
    // A failure is silent: the callers have no result.
    static_cast<void>(platform::WriteShellLink(inTargetPath, inShortcut.Helper().Path(), {}));
}

} // namespace

bool ResolveIfAlias(File const& inFile, File& outResolvedFile, Dir& outResolvedDir,
                    bool& outIsDir) {
    if (inFile.GetExtension(true) != u".lnk"_utf16 || !inFile.Exists()) {
        return false;
    }
    auto const target = platform::ReadShellLink(inFile.Helper().Path());
    if (!target) {
        return false;
    }
    outIsDir = target.value.isDirectory;
    if (outIsDir) {
        outResolvedDir = Dir(target.value.path);
    } else {
        outResolvedFile = File(target.value.path);
    }
    return true;
}

void ResolveIfAliasFileOnly(File& ioFile) {
    File target;
    Dir targetDir;
    bool isDir = false;
    if (ResolveIfAlias(ioFile, target, targetDir, isDir) && !isDir) {
        ioFile = target;
    }
}

void CreateShortCut(File const& inShortcut, Dir const& inTarget) {
    MakeShortcut(inShortcut, inTarget.Helper().Path());
}

void CreateShortCut(File const& inShortcut, File const& inTarget) {
    MakeShortcut(inShortcut, inTarget.Helper().Path());
}

std::int32_t FileUtils::ResolveIT(UTF16String& ioPath, bool& outIsDirectory) {
    return utility::FileUtils::ResolveIT(ioPath, outIsDirectory);
}

std::int32_t FileUtils::CreateLink(UTF16String const& inTarget, UTF16String const& inLinkPath,
                                   UTF16String const& inDescription) {
    return utility::FileUtils::CreateLink(inTarget, inLinkPath, inDescription);
}

} // namespace brindle::filesupport
