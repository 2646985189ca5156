#include <brindle/debug/SafeTraceStream.h>

#include "platform/DebugOutput.h"

#include <brindle/utility/StringStreams.h>
#include <brindle/utility/UTF8Sequence.h>
#include <brindle/utility/Unicode.h>

#include <locale>

namespace brindle::debug {

namespace {

constexpr std::uint32_t kMostBytesOfAUnit = 3;

template <typename Number>
SafeTraceStream& InsertNumber(SafeTraceStream& ioStream, Number inValue) {
    oUTF16StringStream digits;
    digits.imbue(std::locale::classic());
    digits << inValue;
    return ioStream << digits.str().c_str();
}

} // namespace

SafeTraceStream::~SafeTraceStream() {
    if (mFillCount > 0) {
        Send();
    }
}

void SafeTraceStream::Put(std::uint16_t inUnit) noexcept {
    mUnits[mFillCount++] = inUnit;
    if (mFillCount == kUnits - 1) {
        Send();
    }
}

void SafeTraceStream::Send() noexcept {
    mUnits[mFillCount] = 0;
    char text[kUnits * kMostBytesOfAUnit];
    char* end = text;
    for (auto const* unit = mUnits; *unit != 0; ++unit) {
        char32_t value = *unit;
        // The unit behind the last one is the NUL, which is no low surrogate.
        if (utility::UnicodeSurrogate(unit[0]) == utility::kSurrogate_High &&
            utility::UnicodeSurrogate(unit[1]) == utility::kSurrogate_Low) {
            value = utility::JoinSurrogates(unit[0], unit[1]);
            ++unit;
        }
        end = utility::EncodeUTF8Sequence(value, end);
    }
    *end = '\0';
    mFillCount = 0;
    platform::WriteDebugOutput(text);
}

SafeTraceStream& operator<<(SafeTraceStream& ioStream, char const* inText) noexcept {
    for (; inText != nullptr && *inText != '\0'; ++inText) {
        ioStream.Put(static_cast<std::uint16_t>(static_cast<signed char>(*inText)));
    }
    return ioStream;
}

SafeTraceStream& operator<<(SafeTraceStream& ioStream, std::uint16_t const* inText) noexcept {
    for (; inText != nullptr && *inText != 0; ++inText) {
        ioStream.Put(*inText);
    }
    return ioStream;
}

SafeTraceStream& operator<<(SafeTraceStream& ioStream, std::int32_t inValue) {
    return InsertNumber(ioStream, inValue);
}

SafeTraceStream& operator<<(SafeTraceStream& ioStream, std::uint32_t inValue) {
    return InsertNumber(ioStream, inValue);
}

SafeTraceStream& operator<<(SafeTraceStream& ioStream, std::int64_t inValue) {
    return InsertNumber(ioStream, inValue);
}

SafeTraceStream& operator<<(SafeTraceStream& ioStream, std::uint64_t inValue) {
    return InsertNumber(ioStream, inValue);
}

} // namespace brindle::debug
