#pragma once

#include "utility/src/streams/UnitCtype.h"

#include <locale>
#include <streambuf>

namespace brindle::utility {

/// Receives the standard characters that a facet writes, and writes them to the target as units.
template <typename Unit>
class UnitSink final : public std::basic_streambuf<StandardCharacterT<Unit>> {
public:
    using Character = StandardCharacterT<Unit>;
    using Traits = std::char_traits<Character>;

    explicit UnitSink(std::ostreambuf_iterator<Unit> inTarget) : mTarget(inTarget) {}

    std::ostreambuf_iterator<Unit> Target() const { return mTarget; }

private:
    typename Traits::int_type overflow(typename Traits::int_type inCharacter) override {
        if (!Traits::eq_int_type(inCharacter, Traits::eof())) {
            *mTarget++ = static_cast<Unit>(Traits::to_char_type(inCharacter));
        }
        return mTarget.failed() ? Traits::eof() : Traits::not_eof(inCharacter);
    }

    std::ostreambuf_iterator<Unit> mTarget;
};

/// Delivers units as standard characters. It reads none before the facet consumes it, so the unit
/// that ends a number stays in the stream.
template <typename Unit>
class UnitSource final : public std::basic_streambuf<StandardCharacterT<Unit>> {
public:
    using Character = StandardCharacterT<Unit>;
    using Traits = std::char_traits<Character>;
    using Iterator = std::istreambuf_iterator<Unit>;

    UnitSource(Iterator inBegin, Iterator inEnd) : mAt(inBegin), mEnd(inEnd) {}

    Iterator Position() const { return mAt; }

private:
    typename Traits::int_type underflow() override {
        return mAt == mEnd ? Traits::eof() : Traits::to_int_type(static_cast<Character>(*mAt));
    }
    typename Traits::int_type uflow() override {
        auto const character = underflow();
        if (!Traits::eq_int_type(character, Traits::eof())) {
            ++mAt;
        }
        return character;
    }

    Iterator mAt;
    Iterator mEnd;
};

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
