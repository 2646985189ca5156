#pragma once

#include "utility/src/streams/UnitBuffers.h"

#include <ctime>
#include <locale>
#include <string>

#ifdef _LIBCPP_VERSION

namespace brindle::utility {

template <typename Unit>
std::basic_string<Unit> const& NoText() {
    static std::basic_string<Unit> const none;
    return none;
}

} // namespace brindle::utility

#endif

namespace std {

// Undefined in the standard libraries for units, as `std::ctype` is. The classes below override
// what would call these definitions.

#ifdef __GLIBCXX__

template <typename Unit>
void __timepunct<Unit>::_M_put(Unit*, size_t, Unit const*, tm const*) const throw() {}

#else

#define BRN_NO_TIME_TEXT(NAME, RESULT, VALUE)                                                      \
    template <typename Unit>                                                                       \
    typename __time_get_c_storage<Unit>::string_type const RESULT                                  \
    __time_get_c_storage<Unit>::NAME() const {                                                     \
        return VALUE;                                                                              \
    }
BRN_NO_TIME_TEXT(__weeks, *, nullptr)
BRN_NO_TIME_TEXT(__months, *, nullptr)
BRN_NO_TIME_TEXT(__am_pm, *, nullptr)
BRN_NO_TIME_TEXT(__c, &, brindle::utility::NoText<Unit>())
BRN_NO_TIME_TEXT(__r, &, brindle::utility::NoText<Unit>())
BRN_NO_TIME_TEXT(__x, &, brindle::utility::NoText<Unit>())
BRN_NO_TIME_TEXT(__X, &, brindle::utility::NoText<Unit>())
#undef BRN_NO_TIME_TEXT

#endif

} // namespace std

namespace brindle::utility {

/// Writes dates and times by the facet that the stream's locale has for the standard character
/// type.
template <typename Unit>
class UnitTimePut final : public std::time_put<Unit> {
    using Character = StandardCharacterT<Unit>;
    using Iterator = typename std::time_put<Unit>::iter_type;

    Iterator do_put(Iterator inTarget, std::ios_base& ioState, Unit inFill, std::tm const* inTime,
                    char inFormat, char inModifier) const override {
        UnitSink<Unit> sink(inTarget);
        std::locale const locale = ioState.getloc();
        std::use_facet<std::time_put<Character>>(locale).put(
            &sink, ioState, static_cast<Character>(inFill), inTime, inFormat, inModifier);
        return sink.Target();
    }
};

/// Reads dates and times by the facet that the stream's locale has for the standard character type.
template <typename Unit>
class UnitTimeGet final : public std::time_get<Unit> {
    using Character = StandardCharacterT<Unit>;
    using Iterator = typename std::time_get<Unit>::iter_type;
    using State = std::ios_base::iostate;
    using Facet = std::time_get<Character>;

    /// Calls `inGet` with the facet and with iterators over the units as standard characters.
    template <typename Get>
    static Iterator Read(Iterator inBegin, Iterator inEnd, std::ios_base& ioState, Get inGet) {
        UnitSource<Unit> source(inBegin, inEnd);
        std::locale const locale = ioState.getloc();
        inGet(std::use_facet<Facet>(locale), std::istreambuf_iterator<Character>(&source),
              std::istreambuf_iterator<Character>());
        return source.Position();
    }

    Iterator do_get_time(Iterator inBegin, Iterator inEnd, std::ios_base& ioState, State& outError,
                         std::tm* outTime) const override {
        return Read(inBegin, inEnd, ioState, [&](Facet const& inFacet, auto inFirst, auto inLast) {
            inFacet.get_time(inFirst, inLast, ioState, outError, outTime);
        });
    }
    Iterator do_get_date(Iterator inBegin, Iterator inEnd, std::ios_base& ioState, State& outError,
                         std::tm* outTime) const override {
        return Read(inBegin, inEnd, ioState, [&](Facet const& inFacet, auto inFirst, auto inLast) {
            inFacet.get_date(inFirst, inLast, ioState, outError, outTime);
        });
    }
    Iterator do_get_weekday(Iterator inBegin, Iterator inEnd, std::ios_base& ioState,
                            State& outError, std::tm* outTime) const override {
        return Read(inBegin, inEnd, ioState, [&](Facet const& inFacet, auto inFirst, auto inLast) {
            inFacet.get_weekday(inFirst, inLast, ioState, outError, outTime);
        });
    }
    Iterator do_get_monthname(Iterator inBegin, Iterator inEnd, std::ios_base& ioState,
                              State& outError, std::tm* outTime) const override {
        return Read(inBegin, inEnd, ioState, [&](Facet const& inFacet, auto inFirst, auto inLast) {
            inFacet.get_monthname(inFirst, inLast, ioState, outError, outTime);
        });
    }
    Iterator do_get_year(Iterator inBegin, Iterator inEnd, std::ios_base& ioState, State& outError,
                         std::tm* outTime) const override {
        return Read(inBegin, inEnd, ioState, [&](Facet const& inFacet, auto inFirst, auto inLast) {
            inFacet.get_year(inFirst, inLast, ioState, outError, outTime);
        });
    }
    Iterator do_get(Iterator inBegin, Iterator inEnd, std::ios_base& ioState, State& outError,
                    std::tm* outTime, char inFormat, char inModifier) const override {
        return Read(inBegin, inEnd, ioState, [&](Facet const& inFacet, auto inFirst, auto inLast) {
            inFacet.get(inFirst, inLast, ioState, outError, outTime, inFormat, inModifier);
        });
    }
};

} // namespace brindle::utility
