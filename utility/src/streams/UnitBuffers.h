#pragma once

#include "utility/src/streams/UnitCtype.h"

#include <iterator>
#include <streambuf>
#include <string>

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

} // namespace brindle::utility
