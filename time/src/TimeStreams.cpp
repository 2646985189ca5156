#include <brindle/time/TimeStreams.h>

#include <brindle/utility/UnitInserters.h>

#include <ostream>

namespace brindle::time {

namespace {

double Seconds(TickTime const& inTime) {
    return static_cast<double>(inTime.GetTicks()) / static_cast<double>(kTicksPerSecond);
}

} // namespace

std::basic_ostream<char>& operator<<(std::basic_ostream<char>& ioStream, FrameRate const& inRate) {
    return ioStream << inRate.GetValue();
}

std::basic_ostream<std::uint16_t>& operator<<(std::basic_ostream<std::uint16_t>& ioStream,
                                              FrameRate const& inRate) {
    return ioStream << inRate.GetValue();
}

std::basic_ostream<std::uint8_t>& operator<<(std::basic_ostream<std::uint8_t>& ioStream,
                                             FrameRate const& inRate) {
    return ioStream << inRate.GetValue();
}

std::basic_ostream<std::uint16_t>& operator<<(std::basic_ostream<std::uint16_t>& ioStream,
                                              TickTime const& inTime) {
    return ioStream << Seconds(inTime);
}

std::basic_ostream<std::uint8_t>& operator<<(std::basic_ostream<std::uint8_t>& ioStream,
                                             TickTime const& inTime) {
    return ioStream << Seconds(inTime);
}

} // namespace brindle::time
