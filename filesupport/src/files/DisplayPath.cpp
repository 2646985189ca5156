#include <brindle/filesupport/DisplayPath.h>

#include "platform/KnownFolders.h"
#include "platform/Paths.h"

#include <brindle/utility/TextConversions.h>

namespace brindle::filesupport {

namespace {

UTF16String Native(UTF16String const& inPath) {
    auto const native = platform::NativePath(inPath);
    return native ? utility::Utf16(native.value) : utility::Utf16(utility::ToStd(inPath));
}

UTF16String Displayed(UTF16String const& inPath) {
    auto const native = platform::NativePath(inPath);
    if (!native) {
        return utility::Utf16(utility::ToStd(inPath));
    }
    auto path = native.value;
    auto const folder = platform::FindKnownFolder(platform::KnownFolder::kHome);
    auto const home = platform::NativePath(folder.value).value;
    bool const isInHome = home.size() > 1 && path.compare(0, home.size(), home) == 0 &&
                          (path.size() == home.size() || path[home.size()] == '/');
    if (isInHome) {
        path.replace(0, home.size(), "~");
    }
    return utility::Utf16(path);
}

} // namespace

UTF16String DisplayPath(File const& inFile) {
    return Displayed(inFile.Helper().Path());
}

UTF16String DisplayPath(Dir const& inDir) {
    return Displayed(inDir.Helper().Path());
}

UTF16String ReplacementText(File const& inFile) {
    return Native(inFile.Helper().Path());
}

UTF16String ReplacementText(Dir const& inDir) {
    return Native(inDir.Helper().Path());
}

} // namespace brindle::filesupport
