#include <brindle/filesupport/StringByteStream.h>

#include "filesupport/src/streams/ContainerReading.h"

namespace brindle::filesupport {

IStringByteStream::~IStringByteStream() = default;

std::uint8_t IStringByteStream::Get() {
    return GetFrom(mString, mPosition);
}

void IStringByteStream::ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) {
    ReadBlockFrom(mString, mPosition, outDestination, inCount);
}

void IStringByteStream::CurPos(std::uint64_t inPosition) {
    SeekIn(mString, mPosition, inPosition);
}

std::uint64_t IStringByteStream::CurPos() const {
    return mPosition;
}

std::uint64_t IStringByteStream::Length() const {
    return mString.size();
}

OStringByteStream::~OStringByteStream() = default;

void OStringByteStream::Put(std::uint8_t inValue) {
    mString.push_back(static_cast<char>(inValue));
}

void OStringByteStream::WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) {
    mString.append(reinterpret_cast<char const*>(inSource), inCount);
}

void OStringByteStream::CurPos(std::uint64_t) {}

std::uint64_t OStringByteStream::CurPos() const {
    return mString.size();
}

} // namespace brindle::filesupport
