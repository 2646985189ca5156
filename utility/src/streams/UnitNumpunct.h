#pragma once

#include "utility/src/streams/UnitCtype.h"

#include <locale>
#include <string>

#ifdef __GLIBCXX__

namespace std {

// Undefined in the standard library, as for `std::ctype`; but these two are called.

template <typename Unit>
numpunct<Unit>::~numpunct() {}

template <typename Unit>
void numpunct<Unit>::_M_initialize_numpunct(__c_locale) {}

} // namespace std

#endif

namespace brindle::utility {

/// Separators, grouping and the names of truth values as in the `numpunct` facet of the standard
/// character type.
template <typename Unit>
class UnitNumpunct final : public std::numpunct<Unit> {
public:
    using Character = StandardCharacterT<Unit>;
    using typename std::numpunct<Unit>::string_type;

    /// Uses the facet of `inBase`, and keeps it alive.
    explicit UnitNumpunct(std::locale const& inBase)
        : mOwner(std::locale::classic().combine<std::numpunct<Character>>(inBase)),
          mFacet(std::use_facet<std::numpunct<Character>>(mOwner)) {}

    bool IsOf(std::locale const& inLocale) const {
        return &mFacet == &std::use_facet<std::numpunct<Character>>(inLocale);
    }

private:
    static string_type Converted(std::basic_string<Character> const& inText) {
        return string_type(inText.begin(), inText.end());
    }

    Unit do_decimal_point() const override { return static_cast<Unit>(mFacet.decimal_point()); }
    Unit do_thousands_sep() const override { return static_cast<Unit>(mFacet.thousands_sep()); }
    std::string do_grouping() const override { return mFacet.grouping(); }
    string_type do_truename() const override { return Converted(mFacet.truename()); }
    string_type do_falsename() const override { return Converted(mFacet.falsename()); }

    std::locale mOwner;
    std::numpunct<Character> const& mFacet;
};

} // namespace brindle::utility
