#include "host/setup/HostLocalizer.h"

#include <brindle/utility/Unicode.h>

#include <cstring>

namespace brindle::host {

UTF16String HostLocalizer::LocalizeString(char const* inLiteral) {
    char const* const equals = std::strchr(inLiteral, '=');
    return utility::AsciiToUTF16(equals != nullptr ? equals + 1 : inLiteral);
}

} // namespace brindle::host
