#pragma once

#include <brindle/utility/TextTypes.h>
#include <brindle/xml/XMLParseFault.h>

#include <cstdint>

namespace brindle::proplist {

/// What became of the document.
enum PropListLoadStatus : std::int32_t {
    kPropListLoad_Done = 0,       ///< the whole document was read
    kPropListLoad_Missing = 1,    ///< there is no such file
    kPropListLoad_Unreadable = 2, ///< the file could not be read to its end, and may be intact
    kPropListLoad_Damaged = 3,    ///< the document was read, and is not well-formed
    kPropListLoad_NoParser = 4    ///< the host has installed no parser
};

/// How a document was read.
struct PropListLoadResult {
    PropListLoadStatus status = kPropListLoad_Done; ///< what became of the document
    /// Why a file is missing or unreadable, or where a damaged document is malformed.
    xml::XMLParseFault fault;
    /// The new path of a damaged file; empty if it was not renamed.
    UTF16String renamedTo;
};

} // namespace brindle::proplist
