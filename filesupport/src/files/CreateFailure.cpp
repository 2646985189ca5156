#include "filesupport/src/files/CreateFailure.h"

#include <brindle/filesupport/FileExceptions.h>

#include <cstdint>

namespace brindle::filesupport {

void ThrowCreateFailure(File const& inFile, platform::ErrorCode inError) {
    switch (static_cast<std::uint32_t>(inError)) {
    case 2:
    case 6:
    case 18:
    case 107:
        throw create_fnf_exception(inFile);
    case 3:
        throw create_invalidpath_exception(inFile);
    case 19:
        throw create_locked_exception(inFile);
    case 5:
    case 12:
    case 29:
    case 54:
    case 58:
    case 64:
    case 65:
    case 71:
    case 80:
    case 82:
    case 86:
    case 170:
    case 183:
    case 999:
        throw create_accessdenied_exception(inFile);
    default:
        throw create_exception(inFile);
    }
}

} // namespace brindle::filesupport
