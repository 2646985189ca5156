#pragma once

#include "utility/src/unicode/UnicodeAssign.h"

#include <cstring>

namespace brindle::xml::impl {

/// Expat reports a name in a namespace as the namespace, this separator and the local name. The
/// character is not allowed in XML, so no namespace contains it.
constexpr char kNamespaceSeparator[] = "\x01";

/// Replaces `outName` by the local part of a name as Expat reports it.
inline void AssignLocalName(char const* inName, UTF16String& outName) {
    std::size_t const length = std::strlen(inName);
    std::size_t start = length;
    while (start > 0 && inName[start - 1] != kNamespaceSeparator[0]) {
        --start;
    }
    utility::impl::AssignUTF8to16(inName + start, length - start, outName);
}

} // namespace brindle::xml::impl
