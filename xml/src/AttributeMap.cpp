#include "xml/src/AttributeMap.h"

#include "xml/src/ExpatName.h"

#include <utility>

namespace brindle::xml::impl {

void AttributeMap::Assign(char const* const* inNamesAndValues) {
    while (!mMap.empty()) {
        mSpare.push_back(mMap.extract(mMap.begin()));
    }
    for (; *inNamesAndValues != nullptr; inNamesAndValues += 2) {
        Put(inNamesAndValues[0], inNamesAndValues[1]);
    }
}

void AttributeMap::Put(char const* inName, char const* inValue) {
    if (mSpare.empty()) {
        Map fresh{{UTF16String(), UTF16String()}};
        mSpare.push_back(fresh.extract(fresh.begin()));
    }
    Map::node_type node = std::move(mSpare.back());
    mSpare.pop_back();
    AssignLocalName(inName, node.key());
    utility::impl::AssignUTF8to16(inValue, std::strlen(inValue), node.mapped());

    auto placed = mMap.insert(std::move(node));
    if (!placed.inserted) {
        placed.position->second.swap(placed.node.mapped());
        mSpare.push_back(std::move(placed.node));
    }
}

} // namespace brindle::xml::impl
