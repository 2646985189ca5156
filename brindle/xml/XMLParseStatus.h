#pragma once

#include <cstdint>

namespace brindle::xml {

/// How a parse ended.
enum XMLParseStatus : std::int32_t {
    kXMLParseStatus_Success = 0, ///< the whole document was well-formed
    kXMLParseStatus_Failure = 10 ///< it was not, or could not be read
};

} // namespace brindle::xml
