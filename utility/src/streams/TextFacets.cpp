#include <brindle/utility/StringStreams.h>

#include "utility/src/streams/UnitCtype.h"
#include "utility/src/streams/UnitNumbers.h"

namespace brindle::utility {

namespace {

/// True if the locale has a `ctype` facet for the units that is usable: a client's own, or one of
/// this library's that belongs to the locale's facet for standard characters.
template <typename Unit>
bool HasCtype(std::locale const& inLocale) {
    if (!std::has_facet<std::ctype<Unit>>(inLocale)) {
        return false;
    }
    auto const* const ours =
        dynamic_cast<UnitCtype<Unit> const*>(&std::use_facet<std::ctype<Unit>>(inLocale));
    return ours == nullptr || ours->IsOf(inLocale);
}

template <typename Unit>
std::locale WithFacetsOf(std::locale inLocale) {
    if (!HasCtype<Unit>(inLocale)) {
        inLocale = std::locale(inLocale, new UnitCtype<Unit>(inLocale));
    }
    if (!std::has_facet<std::num_put<Unit>>(inLocale)) {
        inLocale = std::locale(inLocale, new UnitNumPut<Unit>);
    }
    if (!std::has_facet<std::num_get<Unit>>(inLocale)) {
        inLocale = std::locale(inLocale, new UnitNumGet<Unit>);
    }
    return inLocale;
}

std::locale WithAllFacets(std::locale const& inBase) {
    return WithFacetsOf<std::uint8_t>(WithFacetsOf<std::uint16_t>(inBase));
}

} // namespace

std::locale WithTextFacets(std::locale const& inBase) {
    static std::locale const classic = WithAllFacets(std::locale::classic());
    return inBase == std::locale::classic() ? classic : WithAllFacets(inBase);
}

} // namespace brindle::utility
