// Offloads camera cards: offload [SOURCE DESTINATION [--no-window]]
#include "Window.h"

#include <brindle/config/ClientIdentity.h>
#include <brindle/config/Describe.h>
#include <brindle/config/PrintingErrorManager.h>
#include <brindle/filesupport/CommonDirs.h>
#include <brindle/proplist/Preferences.h>
#include <brindle/threads/AsyncThreadedExecutor.h>

#include <iostream>

using namespace brindle;

int main(int argc, char** argv) try {
    config::SetCompanyName(u"Example"_utf16);
    config::SetClientName(u"Offload"_utf16);
    config::SetClientInternalVersion(u"1.0"_utf16);
    static config::PrintingErrorManager errors("offload");
    config::ErrorManager::Set(&errors);

    proplist::PropList preferences;
    auto const file = proplist::utils::PreferencesFile();
    proplist::utils::LoadPropList(file, preferences);
    if (argc >= 3) {
        preferences.Set("source", argv[1]);
        preferences.Set("destination", argv[2]);
    }

    static proplist::TableLocalizer texts;
    texts.LoadTable("de", {filesupport::commondirs::ResourcesDir(), u"german.xml"_utf16});
    config::Localizer::Set(&texts);

    auto const pool = threads::CreateAsyncThreadedExecutor("offload");
    if (argc >= 4 && std::string_view(argv[3]) == "--no-window") {
        offload::Offload offload(offload::Order(preferences), pool, pool, [](auto const&) {});
        offload.Wait();
        for (UTF16String const& sentence : offload.Last().failures) {
            std::cerr << sentence << '\n';
        }
        std::cout << offload.Last().summary << '\n';
        return offload.Last().failures.empty() ? 0 : 1;
    }
    offload::RunWindow(preferences, texts, pool);
    proplist::utils::SavePropList(file, preferences);
    return 0;
} catch (std::exception const& error) {
    std::cerr << config::DescribeInUTF8(error) << '\n';
    return 2;
}
