#include <brindle/filesupport/StdByteStream.h>

namespace brindle::filesupport {

namespace {

std::uint64_t PositionFrom(std::streampos inPosition) {
    return static_cast<std::uint64_t>(std::streamoff(inPosition));
}

} // namespace

IStdByteStream::~IStdByteStream() = default;

std::uint8_t IStdByteStream::Get() {
    auto const value = mStream.get();
    if (value == std::istream::traits_type::eof()) {
        throw eof_error();
    }
    return static_cast<std::uint8_t>(value);
}

void IStdByteStream::ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) {
    // Reading nothing from a stream at its end would set its fail bit.
    if (inCount != 0 && !mStream.read(reinterpret_cast<char*>(outDestination), inCount)) {
        throw eof_error();
    }
}

void IStdByteStream::CurPos(std::uint64_t inPosition) {
    mStream.seekg(std::streampos(static_cast<std::streamoff>(inPosition)));
}

std::uint64_t IStdByteStream::CurPos() const {
    return PositionFrom(mStream.tellg());
}

std::uint64_t IStdByteStream::Length() const {
    auto const position = mStream.tellg();
    if (position == std::streampos(-1)) {
        // A pipe or a terminal. An attempt to seek would make reading fail too.
        return 0;
    }
    mStream.seekg(0, std::ios_base::end);
    auto const end = mStream.tellg();
    mStream.seekg(position);
    return end == std::streampos(-1) ? 0 : PositionFrom(end);
}

OStdByteStream::~OStdByteStream() = default;

void OStdByteStream::Put(std::uint8_t inValue) {
    mStream.put(static_cast<char>(inValue));
}

void OStdByteStream::WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) {
    mStream.write(reinterpret_cast<char const*>(inSource), inCount);
}

void OStdByteStream::CurPos(std::uint64_t inPosition) {
    mStream.seekp(std::streampos(static_cast<std::streamoff>(inPosition)));
}

std::uint64_t OStdByteStream::CurPos() const {
    return PositionFrom(mStream.tellp());
}

} // namespace brindle::filesupport
