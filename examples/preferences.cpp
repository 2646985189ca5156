// Loads preferences, changes one of them and saves them. Each run zooms in by a half.
#include <brindle/config/Describe.h>
#include <brindle/proplist/PropListUtils.h>
#include <brindle/xml/ExpatParser.h>
#include <brindle/xml/Parser.h>
#include <iostream>
#include <memory>

int main() try {
    using namespace brindle;
    using namespace brindle::literals;
    std::unique_ptr<xml::DocParserFactory> parsers = std::make_unique<xml::ExpatParserFactory>();
    xml::SetParserFactory(parsers);

    auto const path = u"preferences.xml"_utf16;
    proplist::PropList preferences;
    // A damaged file is renamed to "preferences.xml.old"; in the first run there is none.
    auto const loaded = proplist::utils::TryLoadPropList(path, preferences, true);
    if (loaded.status == proplist::kPropListLoad_Damaged) {
        std::cerr << "The preferences are damaged in line " << loaded.fault.line << ".\n";
    }
    double zoom = 1; // if there is no such preference
    preferences.GetValue("zoom"_utf8, zoom);
    std::cout << "zoom " << zoom << '\n';

    preferences.SetValue("zoom"_utf8, zoom * 1.5);
    preferences.NewSubList("window"_utf8)->SetValue("title"_utf8, u"Pier"_utf16);
    proplist::utils::SavePropList(path, preferences); // whole, or not at all
    xml::ResetParserFactory();
} catch (std::exception const& error) {
    std::cerr << brindle::config::DescribeInUTF8(error) << '\n';
    return 1;
}
