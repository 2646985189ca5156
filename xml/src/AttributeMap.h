#pragma once

#include <brindle/utility/TextTypes.h>

#include <map>
#include <vector>

namespace brindle::xml::impl {

/// The attributes of one element after another, in nodes and texts that are used again.
class AttributeMap {
public:
    using Map = std::map<UTF16String, UTF16String>;

    /// Takes names and values by turns, up to a null, in UTF-8. A name that has come before takes
    /// the later value.
    void Assign(char const* const* inNamesAndValues);

    Map const& Get() const noexcept { return mMap; }

private:
    void Put(char const* inName, char const* inValue);

    Map mMap;
    std::vector<Map::node_type> mSpare;
};

} // namespace brindle::xml::impl
