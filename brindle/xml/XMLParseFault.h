#pragma once

#include <brindle/utility/SystemError.h>

#include <cstdint>

namespace brindle::xml {

/// How a parse ended.
enum XMLParseFaultKind : std::int32_t {
    kXMLParseFault_None = 0,       ///< the document was parsed to its end
    kXMLParseFault_Unknown = 1,    ///< the parser does not say
    kXMLParseFault_Unreadable = 2, ///< it could not be read to its end, and may be intact
    kXMLParseFault_Malformed = 3   ///< it was read, and is not well-formed or beyond a limit
};

/// Why and where a parse failed.
struct XMLParseFault {
    XMLParseFaultKind kind = kXMLParseFault_Unknown; ///< how it ended

    utility::SystemError error{}; ///< the reason why a document is unreadable

    // The place of the fault, counted from 1, where a malformed document is concerned; 0 if
    // unknown.
    std::uint64_t line = 0;   ///< 0 if it is unknown
    std::uint64_t column = 0; ///< in characters

    char const* reason = ""; ///< in English, for developers; the text lives as long as the process
};

} // namespace brindle::xml
