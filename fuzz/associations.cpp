#include "platform/posix/AssociationFiles.h"
#include "platform/posix/DesktopEntry.h"

#include <cstddef>
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
    for (auto const& name : EntriesFor(bytes, "Default Applications", "text/x")) {
        if (name.find('/') != std::string::npos || name.front() == '.') {
            std::abort();
        }
    }
    auto const application = ParseDesktopApplication(bytes);
    bool const isRight = types.Types().size() <= 16 &&
                         static_cast<bool>(application) != application.value.program.empty();
    if (!isRight) {
        std::abort();
    }
    return 0;
}
