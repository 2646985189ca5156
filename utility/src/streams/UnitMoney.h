#pragma once

#include "utility/src/streams/UnitBuffers.h"

#include <locale>
#include <string>

namespace brindle::utility {

/// Writes amounts of money by the facet that the stream's locale has for the standard character
/// type.
template <typename Unit>
class UnitMoneyPut final : public std::money_put<Unit> {
    using Character = StandardCharacterT<Unit>;
    using Iterator = typename std::money_put<Unit>::iter_type;
    using Text = typename std::money_put<Unit>::string_type;

    template <typename Amount>
    static Iterator Put(Iterator inTarget, bool inIsInternational, std::ios_base& ioState,
                        Unit inFill, Amount const& inAmount) {
        UnitSink<Unit> sink(inTarget);
        std::locale const locale = ioState.getloc();
        std::use_facet<std::money_put<Character>>(locale).put(
            &sink, inIsInternational, ioState, static_cast<Character>(inFill), inAmount);
        return sink.Target();
    }

    Iterator do_put(Iterator inTarget, bool inIsInternational, std::ios_base& ioState, Unit inFill,
                    long double inAmount) const override {
        return Put(inTarget, inIsInternational, ioState, inFill, inAmount);
    }
    Iterator do_put(Iterator inTarget, bool inIsInternational, std::ios_base& ioState, Unit inFill,
                    Text const& inDigits) const override {
        return Put(inTarget, inIsInternational, ioState, inFill,
                   std::basic_string<Character>(inDigits.begin(), inDigits.end()));
    }
};

/// Reads amounts of money by the facet that the stream's locale has for the standard character
/// type.
template <typename Unit>
class UnitMoneyGet final : public std::money_get<Unit> {
    using Character = StandardCharacterT<Unit>;
    using Iterator = typename std::money_get<Unit>::iter_type;
    using Text = typename std::money_get<Unit>::string_type;
    using State = std::ios_base::iostate;

    template <typename Amount>
    static Iterator Get(Iterator inBegin, Iterator inEnd, bool inIsInternational,
                        std::ios_base& ioState, State& outError, Amount& outAmount) {
        UnitSource<Unit> source(inBegin, inEnd);
        std::locale const locale = ioState.getloc();
        std::use_facet<std::money_get<Character>>(locale).get(
            std::istreambuf_iterator<Character>(&source), std::istreambuf_iterator<Character>(),
            inIsInternational, ioState, outError, outAmount);
        return source.Position();
    }

    Iterator do_get(Iterator inBegin, Iterator inEnd, bool inIsInternational,
                    std::ios_base& ioState, State& outError,
                    long double& outAmount) const override {
        return Get(inBegin, inEnd, inIsInternational, ioState, outError, outAmount);
    }
    Iterator do_get(Iterator inBegin, Iterator inEnd, bool inIsInternational,
                    std::ios_base& ioState, State& outError, Text& outDigits) const override {
        std::basic_string<Character> digits(outDigits.begin(), outDigits.end());
        Iterator const end = Get(inBegin, inEnd, inIsInternational, ioState, outError, digits);
        outDigits.assign(digits.begin(), digits.end());
        return end;
    }
};

} // namespace brindle::utility
