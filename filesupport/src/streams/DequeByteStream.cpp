#include <brindle/filesupport/DequeByteStream.h>

#include "filesupport/src/streams/ContainerReading.h"

namespace brindle::filesupport {

IDequeByteStream::~IDequeByteStream() = default;

std::uint8_t IDequeByteStream::Get() {
    return GetFrom(mDeque, mPosition);
}

void IDequeByteStream::ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) {
    ReadBlockFrom(mDeque, mPosition, outDestination, inCount);
}

void IDequeByteStream::CurPos(std::uint64_t inPosition) {
    SeekIn(mDeque, mPosition, inPosition);
}

std::uint64_t IDequeByteStream::CurPos() const {
    return mPosition;
}

std::uint64_t IDequeByteStream::Length() const {
    return mDeque.size();
}

ODequeByteStream::~ODequeByteStream() = default;

void ODequeByteStream::Put(std::uint8_t inValue) {
    mDeque.push_back(inValue);
}

void ODequeByteStream::WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) {
    mDeque.insert(mDeque.end(), inSource, inSource + inCount);
}

void ODequeByteStream::CurPos(std::uint64_t) {}

std::uint64_t ODequeByteStream::CurPos() const {
    return mDeque.size();
}

} // namespace brindle::filesupport
