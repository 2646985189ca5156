#include "filesupport/src/files/CreateFailure.h"

#include <brindle/filesupport/FileExceptions.h>

#include <cstdint>

namespace brindle::filesupport {

using config::Because;
using config::FileOperation;

void ThrowCreateFailure(File const& inFile, platform::ErrorCode inError) {
    switch (static_cast<std::uint32_t>(inError)) {
    case 2:
    case 6:
    case 18:
    case 107:
        throw Because(create_fnf_exception(inFile), FileOperation::kCreate, inError);
    case 3:
        throw Because(create_invalidpath_exception(inFile), FileOperation::kCreate, inError);
    case 19:
        throw Because(create_locked_exception(inFile), FileOperation::kCreate, inError);
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
        throw Because(create_accessdenied_exception(inFile), FileOperation::kCreate, inError);
    default:
        throw Because(create_exception(inFile), FileOperation::kCreate, inError);
    }
}

} // namespace brindle::filesupport
