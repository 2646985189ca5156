#pragma once

#include <brindle/utility/TextTypes.h>

#include "platform/Errors.h"

namespace brindle::platform {

enum class KnownFolder {
    kApplicationData, ///< the settings of this user's programs; created if it does not exist
    kDocuments,       ///< this user's documents; created if it does not exist
    kHome,            ///< this user's home
    kPictures,        ///< this and the following: of this user; created if it does not exist
    kMusic,
    kVideos,
    kDownloads,
    kDesktop,
    kCache, ///< what programs can make again
    kState, ///< what programs remember from one run to the next: histories, positions of windows
    kData,  ///< what programs keep for the user
    kTemporary,    ///< files that nobody misses when the program has ended
    kProgramFiles, ///< where installed programs keep what belongs to them alone
    kCommonFiles   ///< where installed programs keep what they share
};

/// The path of a directory that exists when this returns, without a separator at its end. What is
/// created for the user can be entered by nobody else. Looks afresh at each call; any thread may
/// call unless another one changes the environment. Error: 3 there is no such directory.
Result<UTF16String> FindKnownFolder(KnownFolder inFolder);

} // namespace brindle::platform
