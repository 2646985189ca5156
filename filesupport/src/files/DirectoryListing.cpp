#include "filesupport/src/files/DirectoryListing.h"
#include "filesupport/src/files/PathText.h"

#include "platform/Directories.h"
#include "platform/ShellLink.h"

#include <utility>

namespace brindle::filesupport {

namespace {

bool NamesShortcut(UTF16String const& inPath) {
    static constexpr std::uint16_t kExtension[] = {u'.', u'l', u'n', u'k'};
    return inPath.size() >= 4 && inPath.compare(inPath.size() - 4, 4, kExtension, 4) == 0;
}

} // namespace

DirectoryListing ListDirectory(UTF16String const& inPath, bool inResolveAliases) {
    DirectoryListing listing;
    platform::DirectoryScan scan(inPath);
    platform::DirectoryEntry entry;
    while (scan.Next(entry)) {
        UTF16String path = JoinedPath(inPath, entry.name);
        bool isDirectory = entry.isDirectory;
        bool isLink = entry.isLink;
        if (inResolveAliases && !isDirectory && NamesShortcut(path)) {
            auto target = platform::ReadShellLink(path);
            if (!target) {
                continue;
            }
            path = std::move(target.value.path);
            isDirectory = target.value.isDirectory;
            isLink = false;
        }
        auto& list = !isDirectory ? listing.files
                     : isLink     ? listing.linkedSubdirs
                                  : listing.subdirs;
        list.push_back(std::move(path));
    }
    listing.isReadable = scan.Error() == platform::kError_None;
    return listing;
}

} // namespace brindle::filesupport
