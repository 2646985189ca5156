#include <brindle/filesupport/Aliases.h>
#include <brindle/utility/FileUtils.h>

namespace brindle::filesupport {

bool ResolveIfAlias(File const& inFile, File& outResolvedFile, Dir& outResolvedDir,
                    bool& outIsDir) {
    if (inFile.GetExtension(true) != u".lnk"_utf16 || !inFile.Exists()) {
        return false;
    }
    UTF16String path = inFile.FullPath();
    bool isDirectory = false;
    if (utility::FileUtils::ResolveIT(path, isDirectory) != 0) {
        return false;
    }
    if (isDirectory) {
        outResolvedDir = Dir(path);
    } else {
        outResolvedFile = File(path);
    }
    outIsDir = isDirectory;
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
    utility::FileUtils::CreateLink(inTarget.FullPath(), inShortcut.FullPath(), {});
}

void CreateShortCut(File const& inShortcut, File const& inTarget) {
    utility::FileUtils::CreateLink(inTarget.FullPath(), inShortcut.FullPath(), {});
}

std::int32_t FileUtils::ResolveIT(UTF16String& ioPath, bool& outIsDirectory) {
    return utility::FileUtils::ResolveIT(ioPath, outIsDirectory);
}

std::int32_t FileUtils::CreateLink(UTF16String const& inTarget, UTF16String const& inLinkPath,
                                   UTF16String const& inDescription) {
    return utility::FileUtils::CreateLink(inTarget, inLinkPath, inDescription);
}

} // namespace brindle::filesupport
