#pragma once

#include <brindle/Export.h>
#include <brindle/utility/UnitTraits.h>

#include <cstddef>
#include <locale>
#include <string>

// The standard's facets of the units of the library's text types, of which libc++ has none: streams
// of these units ask for them, and `utility::WithTextFacets` adds objects of derived classes to a
// locale. In libstdc++ the general templates serve.

#ifdef _LIBCPP_VERSION

namespace brindle::utility::impl {

/// The interface of `std::ctype`.
template <typename Unit>
class UnitCtypeFacet : public std::locale::facet, public std::ctype_base {
public:
    using char_type = Unit;

    bool is(mask inMask, Unit inUnit) const { return do_is(inMask, inUnit); }
    Unit const* is(Unit const* inBegin, Unit const* inEnd, mask* outMasks) const {
        return do_is(inBegin, inEnd, outMasks);
    }
    Unit const* scan_is(mask inMask, Unit const* inBegin, Unit const* inEnd) const {
        return do_scan_is(inMask, inBegin, inEnd);
    }
    Unit const* scan_not(mask inMask, Unit const* inBegin, Unit const* inEnd) const {
        return do_scan_not(inMask, inBegin, inEnd);
    }
    Unit toupper(Unit inUnit) const { return do_toupper(inUnit); }
    Unit const* toupper(Unit* ioBegin, Unit const* inEnd) const {
        return do_toupper(ioBegin, inEnd);
    }
    Unit tolower(Unit inUnit) const { return do_tolower(inUnit); }
    Unit const* tolower(Unit* ioBegin, Unit const* inEnd) const {
        return do_tolower(ioBegin, inEnd);
    }
    Unit widen(char inCharacter) const { return do_widen(inCharacter); }
    char const* widen(char const* inBegin, char const* inEnd, Unit* outUnits) const {
        return do_widen(inBegin, inEnd, outUnits);
    }
    char narrow(Unit inUnit, char inDefault) const { return do_narrow(inUnit, inDefault); }
    Unit const* narrow(Unit const* inBegin, Unit const* inEnd, char inDefault,
                       char* outCharacters) const {
        return do_narrow(inBegin, inEnd, inDefault, outCharacters);
    }

protected:
    explicit UnitCtypeFacet(std::size_t inReferences) : std::locale::facet(inReferences) {}

private:
    virtual bool do_is(mask, Unit) const = 0;
    virtual Unit const* do_is(Unit const*, Unit const*, mask*) const = 0;
    virtual Unit const* do_scan_is(mask, Unit const*, Unit const*) const = 0;
    virtual Unit const* do_scan_not(mask, Unit const*, Unit const*) const = 0;
    virtual Unit do_toupper(Unit) const = 0;
    virtual Unit const* do_toupper(Unit*, Unit const*) const = 0;
    virtual Unit do_tolower(Unit) const = 0;
    virtual Unit const* do_tolower(Unit*, Unit const*) const = 0;
    virtual Unit do_widen(char) const = 0;
    virtual char const* do_widen(char const*, char const*, Unit*) const = 0;
    virtual char do_narrow(Unit, char) const = 0;
    virtual Unit const* do_narrow(Unit const*, Unit const*, char, char*) const = 0;
};

/// The interface of `std::numpunct`.
template <typename Unit>
class UnitNumpunctFacet : public std::locale::facet {
public:
    using char_type = Unit;
    using string_type = std::basic_string<Unit>;

    Unit decimal_point() const { return do_decimal_point(); }
    Unit thousands_sep() const { return do_thousands_sep(); }
    std::string grouping() const { return do_grouping(); }
    string_type truename() const { return do_truename(); }
    string_type falsename() const { return do_falsename(); }

protected:
    explicit UnitNumpunctFacet(std::size_t inReferences) : std::locale::facet(inReferences) {}

private:
    virtual Unit do_decimal_point() const = 0;
    virtual Unit do_thousands_sep() const = 0;
    virtual std::string do_grouping() const = 0;
    virtual string_type do_truename() const = 0;
    virtual string_type do_falsename() const = 0;
};

} // namespace brindle::utility::impl

namespace std {

#define BRN_UNIT_FACET(FACET, INTERFACE, UNIT)                                                     \
    template <>                                                                                    \
    class FACET<UNIT> : public brindle::utility::impl::INTERFACE<UNIT> {                           \
    public:                                                                                        \
        explicit FACET(size_t inReferences = 0) : INTERFACE(inReferences) {}                       \
        BRN_API static locale::id id;                                                              \
                                                                                                   \
    protected:                                                                                     \
        ~FACET() override = default;                                                               \
    }

BRN_UNIT_FACET(ctype, UnitCtypeFacet, uint16_t);
BRN_UNIT_FACET(ctype, UnitCtypeFacet, uint8_t);
BRN_UNIT_FACET(numpunct, UnitNumpunctFacet, uint16_t);
BRN_UNIT_FACET(numpunct, UnitNumpunctFacet, uint8_t);

#undef BRN_UNIT_FACET

// The general template cannot be compiled for units. The facets of a locale override it.
#define BRN_NO_TIME_PUT(UNIT)                                                                      \
    template <>                                                                                    \
    inline ostreambuf_iterator<UNIT> time_put<UNIT>::do_put(                                       \
        ostreambuf_iterator<UNIT> inTarget, ios_base&, UNIT, tm const*, char, char) const {        \
        return inTarget;                                                                           \
    }
BRN_NO_TIME_PUT(uint16_t)
BRN_NO_TIME_PUT(uint8_t)
#undef BRN_NO_TIME_PUT

} // namespace std

#endif
