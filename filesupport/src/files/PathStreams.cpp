#include <brindle/filesupport/PathStreams.h>

#include <brindle/utility/UnitInserters.h>

namespace brindle::filesupport {

std::basic_ostream<char>& operator<<(std::basic_ostream<char>& ioStream, File const& inFile) {
    return ioStream << inFile.Helper().Path();
}

std::basic_ostream<std::uint16_t>& operator<<(std::basic_ostream<std::uint16_t>& ioStream,
                                              File const& inFile) {
    return ioStream << inFile.Helper().Path();
}

std::basic_ostream<std::uint8_t>& operator<<(std::basic_ostream<std::uint8_t>& ioStream,
                                             File const& inFile) {
    return ioStream << inFile.Helper().Path();
}

std::basic_ostream<char>& operator<<(std::basic_ostream<char>& ioStream, Dir const& inDir) {
    return ioStream << inDir.Helper().Path();
}

std::basic_ostream<std::uint16_t>& operator<<(std::basic_ostream<std::uint16_t>& ioStream,
                                              Dir const& inDir) {
    return ioStream << inDir.Helper().Path();
}

std::basic_ostream<std::uint8_t>& operator<<(std::basic_ostream<std::uint8_t>& ioStream,
                                             Dir const& inDir) {
    return ioStream << inDir.Helper().Path();
}

} // namespace brindle::filesupport
