#include <brindle/utility/StringStreams.h>

#include "utility/src/streams/LocaleExtension.h"
#include "utility/src/streams/UnitCtype.h"
#include "utility/src/streams/UnitMoney.h"
#include "utility/src/streams/UnitNumbers.h"
#include "utility/src/streams/UnitNumpunct.h"
#include "utility/src/streams/UnitTime.h"

#include <memory>
#include <typeinfo>

#ifdef _LIBCPP_VERSION
namespace std {
locale::id ctype<uint16_t>::id;
locale::id ctype<uint8_t>::id;
locale::id numpunct<uint16_t>::id;
locale::id numpunct<uint8_t>::id;
} // namespace std
#endif

namespace brindle::utility {

namespace {

/// The facet that exactly this locale has, or null.
template <typename Facet>
Facet const* FacetOf(std::locale const& inLocale) {
    return std::has_facet<Facet>(inLocale) ? &std::use_facet<Facet>(inLocale) : nullptr;
}

template <typename Facet>
void Add(std::locale& ioLocale, Facet* inFacet) {
    ioLocale = std::locale(ioLocale, inFacet);
}

template <typename Facet, typename OwnFacet>
void AddIfMissing(std::locale& ioLocale) {
    if (!std::has_facet<Facet>(ioLocale)) {
        Add<Facet>(ioLocale, new OwnFacet);
    }
}

/// Adds a facet that represents another facet of the locale, unless there is one: a facet of the
/// client's own, or one of this library's for the locale's present facet.
template <typename Facet, typename OwnFacet>
void AddRepresenting(std::locale& ioLocale) {
    Facet const* const present = FacetOf<Facet>(ioLocale);
    auto const* const own = dynamic_cast<OwnFacet const*>(present);
    if (present == nullptr || (own != nullptr && !own->IsOf(ioLocale))) {
        Add<Facet>(ioLocale, new OwnFacet(ioLocale));
    }
}

/// Adds a facet for numbers. Where the locale has the standard one for the standard character type,
/// its twin for the unit type does the same at the same speed. Another one, which must be a
/// client's, is called.
template <template <typename> class StandardFacet, typename ForwardingFacet, typename Unit>
void AddForNumbers(std::locale& ioLocale) {
    using Facet = StandardFacet<Unit>;
    using Source = StandardFacet<StandardCharacterT<Unit>>;
    bool const isStandard = typeid(std::use_facet<Source>(ioLocale)) == typeid(Source);
    Facet const* const present = FacetOf<Facet>(ioLocale);
    if (present == nullptr || (typeid(*present) == typeid(Facet) && !isStandard)) {
        Add<Facet>(ioLocale, isStandard ? new Facet : new ForwardingFacet);
    }
}

template <typename Unit>
using StandardNumPut = std::num_put<Unit>;
template <typename Unit>
using StandardNumGet = std::num_get<Unit>;

template <typename Unit>
void AddFacets(std::locale& ioLocale) {
    AddRepresenting<std::ctype<Unit>, UnitCtype<Unit>>(ioLocale);
    AddRepresenting<std::numpunct<Unit>, UnitNumpunct<Unit>>(ioLocale);
    AddForNumbers<StandardNumPut, UnitNumPut<Unit>, Unit>(ioLocale);
    AddForNumbers<StandardNumGet, UnitNumGet<Unit>, Unit>(ioLocale);
    AddIfMissing<std::time_put<Unit>, UnitTimePut<Unit>>(ioLocale);
    AddIfMissing<std::time_get<Unit>, UnitTimeGet<Unit>>(ioLocale);
    AddIfMissing<std::money_put<Unit>, UnitMoneyPut<Unit>>(ioLocale);
    AddIfMissing<std::money_get<Unit>, UnitMoneyGet<Unit>>(ioLocale);
}

} // namespace

std::locale WithTextFacets(std::locale const& inBase) {
    if (LocaleExtension const* const known = LocaleExtensions::Find(inBase)) {
        return known->Extended();
    }
    std::locale extended = inBase;
    AddFacets<std::uint16_t>(extended);
    AddFacets<std::uint8_t>(extended);
    if (extended == inBase) {
        return inBase; // it has all facets already, and must not own itself
    }
    return LocaleExtensions::Attach(inBase, new LocaleExtension(extended));
}

} // namespace brindle::utility
