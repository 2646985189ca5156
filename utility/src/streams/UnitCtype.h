#pragma once

#include <brindle/utility/UnitFacets.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <locale>

#ifdef __GLIBCXX__

namespace std {

// The standard library declares the virtual members of the primary template of `std::ctype`, but
// does not define them. A derived class overrides them all, but its constructor refers to the
// virtual table of the base, which refers to them. Nothing calls these definitions.

template <typename Unit>
ctype<Unit>::~ctype() {}

template <typename Unit>
bool ctype<Unit>::do_is(mask, Unit) const {
    return false;
}

template <typename Unit>
Unit const* ctype<Unit>::do_is(Unit const*, Unit const* inEnd, mask*) const {
    return inEnd;
}

template <typename Unit>
Unit const* ctype<Unit>::do_scan_is(mask, Unit const*, Unit const* inEnd) const {
    return inEnd;
}

template <typename Unit>
Unit const* ctype<Unit>::do_scan_not(mask, Unit const* inBegin, Unit const*) const {
    return inBegin;
}

template <typename Unit>
Unit ctype<Unit>::do_toupper(Unit inUnit) const {
    return inUnit;
}

template <typename Unit>
Unit const* ctype<Unit>::do_toupper(Unit*, Unit const* inEnd) const {
    return inEnd;
}

template <typename Unit>
Unit ctype<Unit>::do_tolower(Unit inUnit) const {
    return inUnit;
}

template <typename Unit>
Unit const* ctype<Unit>::do_tolower(Unit*, Unit const* inEnd) const {
    return inEnd;
}

template <typename Unit>
Unit ctype<Unit>::do_widen(char) const {
    return Unit();
}

template <typename Unit>
char const* ctype<Unit>::do_widen(char const*, char const* inEnd, Unit*) const {
    return inEnd;
}

template <typename Unit>
char ctype<Unit>::do_narrow(Unit, char inDefault) const {
    return inDefault;
}

template <typename Unit>
Unit const* ctype<Unit>::do_narrow(Unit const*, Unit const* inEnd, char, char*) const {
    return inEnd;
}

} // namespace std

#endif

namespace brindle::utility {

/// The standard character type whose facets do the work for a unit type.
template <typename Unit>
struct StandardCharacter;
template <>
struct StandardCharacter<std::uint16_t> {
    using type = wchar_t;
};
template <>
struct StandardCharacter<std::uint8_t> {
    using type = char;
};
template <typename Unit>
using StandardCharacterT = typename StandardCharacter<Unit>::type;

/// Classifies units like the `ctype` facet of their standard character type.
template <typename Unit>
class UnitCtype final : public std::ctype<Unit> {
public:
    using Character = StandardCharacterT<Unit>;
    using typename std::ctype<Unit>::mask;

    /// Uses the facet of `inBase`, and keeps it alive.
    explicit UnitCtype(std::locale const& inBase)
        : mOwner(std::locale::classic().combine<std::ctype<Character>>(inBase)),
          mFacet(std::use_facet<std::ctype<Character>>(mOwner)) {
        for (std::size_t i = 0; i < mWidened.size(); ++i) {
            mWidened[i] = static_cast<Unit>(mFacet.widen(static_cast<char>(i)));
        }
    }

    bool IsOf(std::locale const& inLocale) const {
        return &mFacet == &std::use_facet<std::ctype<Character>>(inLocale);
    }

private:
    bool do_is(mask inMask, Unit inUnit) const override {
        return mFacet.is(inMask, static_cast<Character>(inUnit));
    }
    Unit const* do_is(Unit const* inBegin, Unit const* inEnd, mask* outMasks) const override {
        for (; inBegin != inEnd; ++inBegin, ++outMasks) {
            auto const character = static_cast<Character>(*inBegin);
            mFacet.is(&character, &character + 1, outMasks);
        }
        return inEnd;
    }
    Unit const* do_scan_is(mask inMask, Unit const* inBegin, Unit const* inEnd) const override {
        while (inBegin != inEnd && !do_is(inMask, *inBegin)) {
            ++inBegin;
        }
        return inBegin;
    }
    Unit const* do_scan_not(mask inMask, Unit const* inBegin, Unit const* inEnd) const override {
        while (inBegin != inEnd && do_is(inMask, *inBegin)) {
            ++inBegin;
        }
        return inBegin;
    }
    Unit do_toupper(Unit inUnit) const override {
        return static_cast<Unit>(mFacet.toupper(static_cast<Character>(inUnit)));
    }
    Unit const* do_toupper(Unit* ioBegin, Unit const* inEnd) const override {
        for (; ioBegin != inEnd; ++ioBegin) {
            *ioBegin = do_toupper(*ioBegin);
        }
        return inEnd;
    }
    Unit do_tolower(Unit inUnit) const override {
        return static_cast<Unit>(mFacet.tolower(static_cast<Character>(inUnit)));
    }
    Unit const* do_tolower(Unit* ioBegin, Unit const* inEnd) const override {
        for (; ioBegin != inEnd; ++ioBegin) {
            *ioBegin = do_tolower(*ioBegin);
        }
        return inEnd;
    }
    Unit do_widen(char inCharacter) const override {
        return mWidened[static_cast<unsigned char>(inCharacter)];
    }
    char const* do_widen(char const* inBegin, char const* inEnd, Unit* outUnits) const override {
        for (; inBegin != inEnd; ++inBegin) {
            *outUnits++ = do_widen(*inBegin);
        }
        return inEnd;
    }
    char do_narrow(Unit inUnit, char inDefault) const override {
        return mFacet.narrow(static_cast<Character>(inUnit), inDefault);
    }
    Unit const* do_narrow(Unit const* inBegin, Unit const* inEnd, char inDefault,
                          char* outCharacters) const override {
        for (; inBegin != inEnd; ++inBegin) {
            *outCharacters++ = do_narrow(*inBegin, inDefault);
        }
        return inEnd;
    }

    std::locale mOwner;
    std::ctype<Character> const& mFacet;
    std::array<Unit, 256> mWidened; ///< by the character as an unsigned number
};

} // namespace brindle::utility
