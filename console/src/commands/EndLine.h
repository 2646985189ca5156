#pragma once

#include <cstdint>
#include <ostream>

namespace brindle::console {

/// A manipulator that ends a line of a command's output: CR LF, and a flush.
inline std::basic_ostream<std::uint16_t>& EndLine(std::basic_ostream<std::uint16_t>& ioOut) {
    return ioOut << u'\r' << u'\n' << std::flush;
}

} // namespace brindle::console
