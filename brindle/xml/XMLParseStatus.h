#pragma once

#include <cstdint>

namespace brindle::xml {

/// How a parse ended.
enum XMLParseStatus : std::int32_t {
    kXMLParseStatus_Success = 0, ///< the whole document is well-formed
    kXMLParseStatus_Failure = 10 ///< it is not well-formed, or cannot be read
};

} // namespace brindle::xml
