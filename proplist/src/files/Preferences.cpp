#include <brindle/proplist/Preferences.h>

#include <brindle/filesupport/Dir.h>

namespace brindle::proplist::utils {

filesupport::File PreferencesFile() {
    return PreferencesFile(u"Preferences.xml"_utf16);
}

filesupport::File PreferencesFile(UTF16String const& inName) {
    return {filesupport::Dir::PrefDir(), inName};
}

} // namespace brindle::proplist::utils
