#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/Dir.h>

#include <cstdint>

namespace brindle::filesupport {

/// The directories that a desktop keeps for its user.
enum class UserFolder : std::uint8_t {
    kHome,      ///< the directory that holds the others
    kDocuments, ///< what the user writes
    kPictures,  ///< still pictures
    kMusic,     ///< sound
    kVideos,    ///< moving pictures
    kDownloads, ///< what came from elsewhere
    kDesktop,   ///< what lies on the background of the screen
    kSettings,  ///< what programs are told to do; see also `Dir::PrefDir`
    kCache,     ///< what programs can make again
    kState,     ///< what programs remember from one run to the next, such as histories
    kData       ///< what programs keep for the user
};

/// Where the user has a folder, by the desktop's settings:
///
///     File const frame(FindUserFolder(UserFolder::kPictures), u"frame.png"_utf16);
///
/// Except for the home, the directory is created, for the user alone, if it does not exist. Throws
/// `dir_not_found_exception`, with an empty `Dir`, if there is none and it cannot be created. Looks
/// afresh at each call; any thread may call unless another one changes the environment.
[[nodiscard]] BRN_API Dir FindUserFolder(UserFolder inFolder);

} // namespace brindle::filesupport
