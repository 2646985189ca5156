#pragma once

#include <cstdint>

namespace brindle::xml {

enum XMLParseFaultKind : std::int32_t {
    kXMLParseFault_None = 0,       ///< the document was parsed to its end
    kXMLParseFault_Unknown = 1,    ///< the parser does not say
    kXMLParseFault_Unreadable = 2, ///< it could not be read to its end, and may be intact
    kXMLParseFault_Malformed = 3   ///< it was read, and is not well-formed or beyond a limit
};

/// Why and where a parse failed.
struct XMLParseFault {
    XMLParseFaultKind kind = kXMLParseFault_Unknown;

    /// For an unreadable document, the system's reason: 2 and 3 a missing file or directory, 5
    /// access denied, 8 no memory, 32 a file that is being written, and others.
    std::uint32_t error = 0;

    // The place of the fault, counted from 1, where a malformed document is concerned; 0 if
    // unknown.
    std::uint64_t line = 0;
    std::uint64_t column = 0; ///< in characters

    char const* reason = ""; ///< in English, for developers; the text lives as long as the process
};

} // namespace brindle::xml
