#pragma once

#include <brindle/Export.h>

#include <cstdint>

namespace brindle::debug {

/// Writes to the developer's debug channel, and to nothing else, for code that must touch neither
/// the heap nor the log file:
///
///     debug::SafeTraceStream trace;
///     trace << "the allocator is out of memory\n";
///
/// Text is sent in pieces of 511 units, and the rest by the destructor. Texts use no heap; numbers
/// do. A copy begins with the text that has not been sent yet. Used by one thread at a time.
class SafeTraceStream {
public:
    SafeTraceStream() noexcept = default;
    SafeTraceStream(SafeTraceStream const&) noexcept = default;
    SafeTraceStream& operator=(SafeTraceStream const&) noexcept = default;
    BRN_API ~SafeTraceStream();

    /// Appends one unit, and sends the piece if that completes it.
    BRN_API void Put(std::uint16_t inUnit) noexcept;

private:
    static constexpr std::uint32_t kUnits = 512;

    void Send() noexcept;

    std::uint16_t mUnits[kUnits] = {};
    std::uint32_t mFillCount = 0;
};

/// Each byte becomes one unit, with its sign extended, so that only ASCII arrives as it is. Null is
/// an empty text here and below.
BRN_API SafeTraceStream& operator<<(SafeTraceStream& ioStream, char const* inText) noexcept;
BRN_API SafeTraceStream& operator<<(SafeTraceStream& ioStream,
                                    std::uint16_t const* inText) noexcept;

/// Numbers are written in decimal.
BRN_API SafeTraceStream& operator<<(SafeTraceStream& ioStream, std::int32_t inValue);
BRN_API SafeTraceStream& operator<<(SafeTraceStream& ioStream, std::uint32_t inValue);
BRN_API SafeTraceStream& operator<<(SafeTraceStream& ioStream, std::int64_t inValue);
BRN_API SafeTraceStream& operator<<(SafeTraceStream& ioStream, std::uint64_t inValue);

/// A character would be written as a number.
SafeTraceStream& operator<<(SafeTraceStream& ioStream, char inCharacter) = delete;
SafeTraceStream& operator<<(SafeTraceStream& ioStream, char16_t inCharacter) = delete;
SafeTraceStream& operator<<(SafeTraceStream& ioStream, bool inValue) = delete;

} // namespace brindle::debug
