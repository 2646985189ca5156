#pragma once

#include "utility/src/streams/UnitBuffers.h"

#include <locale>

namespace brindle::utility {

/// Writes numbers by the facet that the stream's locale has for the standard character type.
template <typename Unit>
class UnitNumPut final : public std::num_put<Unit> {
    using Character = StandardCharacterT<Unit>;
    using Iterator = typename std::num_put<Unit>::iter_type;

    template <typename Value>
    Iterator Put(Iterator inTarget, std::ios_base& ioState, Unit inFill, Value inValue) const {
        UnitSink<Unit> sink(inTarget);
        std::locale const locale = ioState.getloc();
        std::use_facet<std::num_put<Character>>(locale).put(
            std::ostreambuf_iterator<Character>(&sink), ioState, static_cast<Character>(inFill),
            inValue);
        return sink.Target();
    }

    Iterator do_put(Iterator inTarget, std::ios_base& ioState, Unit inFill,
                    bool inValue) const override {
        return Put(inTarget, ioState, inFill, inValue);
    }
    Iterator do_put(Iterator inTarget, std::ios_base& ioState, Unit inFill,
                    long inValue) const override {
        return Put(inTarget, ioState, inFill, inValue);
    }
    Iterator do_put(Iterator inTarget, std::ios_base& ioState, Unit inFill,
                    unsigned long inValue) const override {
        return Put(inTarget, ioState, inFill, inValue);
    }
    Iterator do_put(Iterator inTarget, std::ios_base& ioState, Unit inFill,
                    long long inValue) const override {
        return Put(inTarget, ioState, inFill, inValue);
    }
    Iterator do_put(Iterator inTarget, std::ios_base& ioState, Unit inFill,
                    unsigned long long inValue) const override {
        return Put(inTarget, ioState, inFill, inValue);
    }
    Iterator do_put(Iterator inTarget, std::ios_base& ioState, Unit inFill,
                    double inValue) const override {
        return Put(inTarget, ioState, inFill, inValue);
    }
    Iterator do_put(Iterator inTarget, std::ios_base& ioState, Unit inFill,
                    long double inValue) const override {
        return Put(inTarget, ioState, inFill, inValue);
    }
    Iterator do_put(Iterator inTarget, std::ios_base& ioState, Unit inFill,
                    void const* inValue) const override {
        return Put(inTarget, ioState, inFill, inValue);
    }
};

/// Reads numbers by the facet that the stream's locale has for the standard character type.
template <typename Unit>
class UnitNumGet final : public std::num_get<Unit> {
    using Character = StandardCharacterT<Unit>;
    using Iterator = typename std::num_get<Unit>::iter_type;
    using State = std::ios_base::iostate;

    template <typename Value>
    Iterator Get(Iterator inBegin, Iterator inEnd, std::ios_base& ioState, State& outError,
                 Value& outValue) const {
        UnitSource<Unit> source(inBegin, inEnd);
        std::locale const locale = ioState.getloc();
        std::use_facet<std::num_get<Character>>(locale).get(
            std::istreambuf_iterator<Character>(&source), std::istreambuf_iterator<Character>(),
            ioState, outError, outValue);
        return source.Position();
    }

    Iterator do_get(Iterator inBegin, Iterator inEnd, std::ios_base& ioState, State& outError,
                    bool& outValue) const override {
        return Get(inBegin, inEnd, ioState, outError, outValue);
    }
    Iterator do_get(Iterator inBegin, Iterator inEnd, std::ios_base& ioState, State& outError,
                    long& outValue) const override {
        return Get(inBegin, inEnd, ioState, outError, outValue);
    }
    Iterator do_get(Iterator inBegin, Iterator inEnd, std::ios_base& ioState, State& outError,
                    unsigned short& outValue) const override {
        return Get(inBegin, inEnd, ioState, outError, outValue);
    }
    Iterator do_get(Iterator inBegin, Iterator inEnd, std::ios_base& ioState, State& outError,
                    unsigned int& outValue) const override {
        return Get(inBegin, inEnd, ioState, outError, outValue);
    }
    Iterator do_get(Iterator inBegin, Iterator inEnd, std::ios_base& ioState, State& outError,
                    unsigned long& outValue) const override {
        return Get(inBegin, inEnd, ioState, outError, outValue);
    }
    Iterator do_get(Iterator inBegin, Iterator inEnd, std::ios_base& ioState, State& outError,
                    long long& outValue) const override {
        return Get(inBegin, inEnd, ioState, outError, outValue);
    }
    Iterator do_get(Iterator inBegin, Iterator inEnd, std::ios_base& ioState, State& outError,
                    unsigned long long& outValue) const override {
        return Get(inBegin, inEnd, ioState, outError, outValue);
    }
    Iterator do_get(Iterator inBegin, Iterator inEnd, std::ios_base& ioState, State& outError,
                    float& outValue) const override {
        return Get(inBegin, inEnd, ioState, outError, outValue);
    }
    Iterator do_get(Iterator inBegin, Iterator inEnd, std::ios_base& ioState, State& outError,
                    double& outValue) const override {
        return Get(inBegin, inEnd, ioState, outError, outValue);
    }
    Iterator do_get(Iterator inBegin, Iterator inEnd, std::ios_base& ioState, State& outError,
                    long double& outValue) const override {
        return Get(inBegin, inEnd, ioState, outError, outValue);
    }
    Iterator do_get(Iterator inBegin, Iterator inEnd, std::ios_base& ioState, State& outError,
                    void*& outValue) const override {
        return Get(inBegin, inEnd, ioState, outError, outValue);
    }
};

} // namespace brindle::utility
