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

void TakeEntries(platform::DirectoryScan& ioScan, UTF16String const& inPath, bool inResolveAliases,
                 DirectoryListing& ioListing) {
    platform::DirectoryEntry entry;
    while (ioScan.Next(entry)) {
        UTF16String path = JoinedPath(inPath, entry.name);
        bool isDirectory = entry.isDirectory;
        auto kind = entry.isLink ? Subdir::kLinked : Subdir::kOwn;
        if (inResolveAliases && !isDirectory && NamesShortcut(path)) {
            auto target = platform::ReadShellLink(path);
            if (!target) {
                continue;
            }
            path = std::move(target.value.path);
            isDirectory = target.value.isDirectory;
            kind = Subdir::kTarget;
        }
        if (isDirectory) {
            ioListing.subdirs.push_back({std::move(path), kind});
        } else {
            ioListing.files.push_back(std::move(path));
        }
    }
    ioListing.identity = ioScan.Identity();
    ioListing.error = ioScan.Error();
}

} // namespace

DirectoryListing ListDirectory(UTF16String const& inPath, bool inResolveAliases,
                               platform::FileIdentity const* inParent) {
    DirectoryListing listing;
    if (inParent == nullptr) {
        platform::DirectoryScan scan(inPath);
        TakeEntries(scan, inPath, inResolveAliases, listing);
    } else {
        platform::DirectoryScan scan(inPath, *inParent);
        TakeEntries(scan, inPath, inResolveAliases, listing);
    }
    return listing;
}

} // namespace brindle::filesupport
