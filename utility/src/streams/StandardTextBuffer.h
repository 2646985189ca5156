#pragma once

#include <brindle/utility/UnitTraits.h>

#include <cstdint>
#include <ostream>
#include <streambuf>

namespace brindle::utility {

/// Writes UTF-16 to a stream of the standard library as UTF-8, and keeps nothing back except a high
/// surrogate whose partner has not been written yet. So what is written through the standard stream
/// itself appears in the order of the calls.
class StandardTextBuffer : public std::basic_streambuf<std::uint16_t> {
public:
    /// The stream outlives the buffer.
    explicit StandardTextBuffer(std::ostream& ioStream) noexcept : mStream(ioStream) {}

protected:
    int_type overflow(int_type inUnit) override;
    std::streamsize xsputn(std::uint16_t const* inUnits, std::streamsize inCount) override;
    int sync() override;

private:
    std::ostream& mStream;
    std::uint16_t mHighSurrogate = 0; // 0 if there is none
};

} // namespace brindle::utility
