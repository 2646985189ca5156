#pragma once

#include <brindle/Export.h>
#include <brindle/time/FrameRate.h>
#include <brindle/time/TickTime.h>

#include <cstdint>
#include <iosfwd>

namespace brindle::time {

// Insertion of times and rates into streams of all unit types of text, in addition to that of a
// `TickTime` into a `std::ostream`, which TickTime.h declares.
//
//     std::cout << kFrameRate_VideoPAL; // 25

/// Inserts the frames per second, as the stream writes a double.
BRN_API std::basic_ostream<char>& operator<<(std::basic_ostream<char>& ioStream,
                                             FrameRate const& inRate);
BRN_API std::basic_ostream<std::uint16_t>& operator<<(std::basic_ostream<std::uint16_t>& ioStream,
                                                      FrameRate const& inRate);
BRN_API std::basic_ostream<std::uint8_t>& operator<<(std::basic_ostream<std::uint8_t>& ioStream,
                                                     FrameRate const& inRate);

/// Inserts the time in seconds, as the stream writes a double.
BRN_API std::basic_ostream<std::uint16_t>& operator<<(std::basic_ostream<std::uint16_t>& ioStream,
                                                      TickTime const& inTime);
BRN_API std::basic_ostream<std::uint8_t>& operator<<(std::basic_ostream<std::uint8_t>& ioStream,
                                                     TickTime const& inTime);

} // namespace brindle::time
