#include <brindle/filesupport/UserFolders.h>

#include "platform/KnownFolders.h"

#include <brindle/filesupport/FileExceptions.h>

namespace brindle::filesupport {

namespace {

platform::KnownFolder KnownFolderFor(UserFolder inFolder) {
    switch (inFolder) {
    case UserFolder::kHome:
        break;
    case UserFolder::kDocuments:
        return platform::KnownFolder::kDocuments;
    case UserFolder::kPictures:
        return platform::KnownFolder::kPictures;
    case UserFolder::kMusic:
        return platform::KnownFolder::kMusic;
    case UserFolder::kVideos:
        return platform::KnownFolder::kVideos;
    case UserFolder::kDownloads:
        return platform::KnownFolder::kDownloads;
    case UserFolder::kDesktop:
        return platform::KnownFolder::kDesktop;
    case UserFolder::kSettings:
        return platform::KnownFolder::kApplicationData;
    case UserFolder::kCache:
        return platform::KnownFolder::kCache;
    case UserFolder::kState:
        return platform::KnownFolder::kState;
    case UserFolder::kData:
        return platform::KnownFolder::kData;
    }
    return platform::KnownFolder::kHome;
}

} // namespace

Dir FindUserFolder(UserFolder inFolder) {
    auto const folder = platform::FindKnownFolder(KnownFolderFor(inFolder));
    if (!folder) {
        throw config::Because(dir_not_found_exception(Dir()), config::FileOperation::kInspect,
                              folder.error);
    }
    return Dir(folder.value);
}

} // namespace brindle::filesupport
