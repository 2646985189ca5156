#pragma once

#include <string>

// The texts of property list documents, as another program would write them.
namespace brindle::tests {

inline std::string Pair(std::string const& inKey, std::string const& inValue) {
    return "<prop.pair><key>" + inKey + "</key>" + inValue + "</prop.pair>";
}

inline std::string List(std::string const& inPairs) {
    return "<prop.list>" + inPairs + "</prop.list>";
}

inline std::string ListDocument(std::string const& inPairs, std::string const& inVersion = "4") {
    return "<prop.map version='" + inVersion + "'>" + List(inPairs) + "</prop.map>";
}

} // namespace brindle::tests
