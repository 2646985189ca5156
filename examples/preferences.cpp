// Loads preferences, changes one of them and saves them. Each run zooms in by a half.
#include <brindle/config/Describe.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/proplist/PropListUtils.h>
#include <iostream>

int main() try {
    using namespace brindle;
    auto const file = filesupport::FileFromNative("preferences.xml");
    proplist::PropList preferences;
    // A damaged file is renamed to "preferences.xml.old"; in the first run there is none.
    auto const loaded = proplist::utils::LoadPropList(file, preferences);
    if (loaded.status == proplist::kPropListLoad_Damaged) {
        std::cerr << "The preferences are damaged in line " << loaded.fault.line << ".\n";
    }
    double const zoom = preferences.Get("zoom", 1.0); // 1, if there is no such preference
    std::cout << "zoom " << zoom << '\n';

    preferences.Set("zoom", zoom * 1.5);
    preferences.NewSubList("window")->Set("title", u"Pier");
    proplist::utils::SavePropList(file, preferences); // whole, or not at all
} catch (std::exception const& error) {
    std::cerr << brindle::config::DescribeInUTF8(error) << '\n';
    return 1;
}
