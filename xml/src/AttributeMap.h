#pragma once

#include <brindle/utility/TextTypes.h>

#include <map>
#include <vector>

namespace brindle::xml::impl {

/// The attributes of an element. The map's nodes and strings are reused from element to element, so
/// that most elements need no allocation.
class AttributeMap {
public:
    using Map = std::map<UTF16String, UTF16String>;

    /// Replaces the attributes by those of an array of alternating names and values, in UTF-8, that
    /// ends with a null. If a name is repeated, its last value is kept.
    void Assign(char const* const* inNamesAndValues);

    Map const& Get() const noexcept { return mMap; }

private:
    void Put(char const* inName, char const* inValue);

    Map mMap;
    std::vector<Map::node_type> mSpare;
};

} // namespace brindle::xml::impl
