// Offloads camera cards: offload [SOURCE DESTINATION] [--start] [--quit-when-done] [--no-window]
#include "Window.h"

#include <brindle/config/ClientIdentity.h>
#include <brindle/config/Describe.h>
#include <brindle/config/PrintingErrorManager.h>
#include <brindle/filesupport/CommonDirs.h>
#include <brindle/glue/GLib.h>
#include <brindle/proplist/Preferences.h>
#include <brindle/threads/AsyncEventLoopAdaptor.h>
#include <brindle/threads/AsyncThreadedExecutor.h>

#include <iostream>

using namespace brindle;

namespace {

/// Interrupting the program cancels the offload.
bool OffloadInTerminal(offload::Host const& inHost) {
    std::optional<offload::State> last;
    offload::Offload offload(
        offload::Order(inHost.preferences), inHost.pool, inHost.loop, [](auto const&) {},
        [&](offload::State const& inState) { last = inState; });
    auto const cancel = +[](gpointer ioOffload) -> gboolean {
        static_cast<offload::Offload*>(ioOffload)->Cancel();
        return G_SOURCE_CONTINUE;
    };
    g_unix_signal_add(SIGINT, cancel, &offload);
    while (!last) {
        g_main_context_iteration(nullptr, TRUE);
    }
    for (UTF16String const& sentence : last->failures) {
        std::cerr << sentence << '\n';
    }
    std::cout << last->Summary() << '\n';
    return last->HasSucceeded();
}

} // namespace

int main(int argc, char** argv) try {
    std::vector<std::string> const words(argv + 1, argv + argc);
    std::set<std::string> const options(words.begin(), words.end());
    config::SetCompanyName(u"Example"_utf16);
    config::SetClientName(u"Offload"_utf16);
    config::SetClientInternalVersion(u"1.0"_utf16);
    static config::PrintingErrorManager errors("offload");
    config::ErrorManager::Set(&errors);

    proplist::PropList german;
    proplist::utils::LoadPropList({filesupport::commondirs::ResourcesDir(), u"german.xml"_utf16},
                                  german);
    static proplist::TableLocalizer texts;
    texts.AddTable("de", german);
    config::Localizer::Set(&texts);

    auto const file = proplist::utils::PreferencesFile();
    proplist::PropList preferences;
    proplist::utils::LoadPropList(file, preferences);
    if (std::string language; preferences.TryGet("language", language)) {
        texts.SetLanguages({language});
    }
    if (words.size() >= 2 && words[0].front() != '-') {
        preferences.Set("source", words[0]);
        preferences.Set("destination", words[1]);
    }

    glue::GLibLoop const attached(G_PRIORITY_DEFAULT_IDLE);
    offload::Host const host{
        preferences, texts,
        threads::CreateAsyncThreadedExecutor("offload", -1, threads::kThreadPriorityNormal),
        threads::AdaptCurrentEventLoopAsExecutor()};
    if (options.count("--no-window") != 0) {
        return OffloadInTerminal(host) ? 0 : 1;
    }
    bool const hasSucceeded = offload::RunWindow(host, options);
    proplist::utils::SavePropList(file, preferences);
    return hasSucceeded ? 0 : 1;
} catch (std::exception const& error) {
    std::cerr << config::DescribeInUTF8(error) << '\n';
    return 2;
}
