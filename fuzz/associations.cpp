#include "platform/desktop/DesktopEntry.h"
#include "platform/desktop/MimeTables.h"

#include <cstdint>
#include <cstdlib>

/// Any bytes are a table of patterns, a list of associations and an entry; no name that comes out
/// leads anywhere else.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* inData, std::size_t inSize) {
    using namespace brindle::platform;

    std::string_view const bytes(reinterpret_cast<char const*>(inData), inSize);
    ExtensionTypes types(".tar.gz");
    types.Add(bytes);
    types.Add(bytes);
    bool isRight = types.Types().size() <= 16;
    for (auto const& name : EntriesFor(bytes, "Default Applications", "text/x")) {
        isRight &= name.find('/') == std::string::npos && name.front() != '.';
    }
    auto const application = ParseDesktopApplication(bytes);
    if (!isRight || static_cast<bool>(application) == application.value.program.empty()) {
        std::abort();
    }
    return 0;
}
