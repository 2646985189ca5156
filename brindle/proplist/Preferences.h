#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/File.h>
#include <brindle/proplist/PropList.h>
#include <brindle/proplist/PropListUtils.h>
#include <brindle/utility/TextTypes.h>

namespace brindle::proplist::utils {

/// The file in which a program keeps the preferences of its user, "Preferences.xml" in
/// `filesupport::Dir::PrefDir`, below the names of company and client (config/ClientIdentity.h):
///
///     proplist::PropList preferences;
///     utils::LoadPropList(utils::PreferencesFile(), preferences); // the first time, nothing
///     preferences.Set("volume", 0.5);
///     utils::SavePropList(utils::PreferencesFile(), preferences);
///
/// Creates the directory, but not the file. Throws `filesupport::dir_exception` if that fails.
[[nodiscard]] BRN_API filesupport::File PreferencesFile();
/// The same for a file of another name, for programs that keep several.
[[nodiscard]] BRN_API filesupport::File PreferencesFile(UTF16String const& inName);

} // namespace brindle::proplist::utils
