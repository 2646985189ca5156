#pragma once

#include "utility/src/unicode/UnicodeAssign.h"

#include <cstring>

namespace brindle::xml::impl {

/// Expat's form of a name in a namespace: the namespace, this, the local name. It can stand in no
/// document, so no namespace holds it.
constexpr char kNamespaceSeparator[] = "\x01";

/// Puts the local name of Expat's form in the place of `outName`'s text.
inline void AssignLocalName(char const* inName, UTF16String& outName) {
    std::size_t const length = std::strlen(inName);
    std::size_t start = length;
    while (start > 0 && inName[start - 1] != kNamespaceSeparator[0]) {
        --start;
    }
    utility::impl::AssignUTF8to16(inName + start, length - start, outName);
}

} // namespace brindle::xml::impl
