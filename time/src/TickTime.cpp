#include <brindle/time/TickTime.h>

#include <ostream>

namespace brindle::time {

std::basic_ostream<char>& operator<<(std::basic_ostream<char>& ioStream, TickTime const& inTime) {
    return ioStream << static_cast<double>(inTime.GetTicks()) /
                           static_cast<double>(kTicksPerSecond);
}

} // namespace brindle::time
