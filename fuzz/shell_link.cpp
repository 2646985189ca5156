#include "platform/desktop/DesktopEntry.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

/// What can be read can be written and read again with the same meaning.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* inData, std::size_t inSize) {
    using namespace brindle::platform;

    auto const link =
        ParseDesktopLink(std::string_view(reinterpret_cast<char const*>(inData), inSize));
    if (!link) {
        return 0;
    }
    auto const again = ParseDesktopLink(FormatDesktopLink(link.value));
    bool const isSame = again && again.value.path == link.value.path;
    if (!isSame) {
        std::abort();
    }
    return 0;
}
