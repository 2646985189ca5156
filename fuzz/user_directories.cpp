#include "platform/desktop/UserDirectories.h"

#include <cstdint>
#include <cstdlib>

/// Any bytes are a file of user directories; what comes out is nothing or an absolute path.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* inData, std::size_t inSize) {
    std::string_view const bytes(reinterpret_cast<char const*>(inData), inSize);
    for (char const* const home : {"", "/home/user"}) {
        auto const path = brindle::platform::UserDirectory(bytes, "XDG_DOCUMENTS_DIR", home);
        if (!path.empty() && path.front() != '/') {
            std::abort();
        }
    }
    return 0;
}
