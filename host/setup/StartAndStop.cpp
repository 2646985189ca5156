#include "host/setup/StartAndStop.h"

#include "host/commandline/Diagnostics.h"

#include <brindle/config/ClientIdentity.h>
#include <brindle/config/Describe.h>
#include <brindle/console/Console.h>
#include <brindle/console/ConsoleLogFile.h>
#include <brindle/debug/Contract.h>
#include <brindle/debug/Trace.h>
#include <brindle/utility/TextTypes.h>
#include <brindle/xml/ExpatParser.h>
#include <brindle/xml/Parser.h>

#include <exception>
#include <memory>

namespace brindle::host {

void StartLibrary(config::ErrorManager& inErrorManager, config::Localizer& inLocalizer) {
    // The preference directory has a level for each name that is not empty.
    config::SetCompanyName(UTF16String());
    config::SetClientName(u"brindle"_utf16);
    config::SetClientInternalVersion(UTF16String());
    config::SetClientVersion(config::GetVersionString());
    config::ErrorManager::Set(&inErrorManager);
    config::Localizer::Set(&inLocalizer);
    std::unique_ptr<xml::DocParserFactory> parsers = std::make_unique<xml::ExpatParserFactory>();
    xml::SetParserFactory(parsers);
    debug::DisableContractDialog(); // which is for developers; users get a diagnostic
    // A host whose files are not beside its program says here where they are: the overrides of
    // brindle/filesupport/CommonDirs.h.
    console::Initialize();
}

void StopLibrary() noexcept {
    try {
        console::Terminate();
        debug::ShutdownTraceManager();
    } catch (std::exception const& error) {
        WriteDiagnostic(config::DescribeInUTF8(error));
    }
    // The last of the diagnostics, so that nothing traces into a closed log.
    console::ConsoleLogFile::Terminate();
    xml::ResetParserFactory();
    config::Localizer::Set(nullptr);
    config::ErrorManager::Set(nullptr);
}

} // namespace brindle::host
