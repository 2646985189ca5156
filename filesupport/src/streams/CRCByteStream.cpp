#include <brindle/filesupport/CRCByteStream.h>

#include "filesupport/src/streams/CRC32.h"

namespace brindle::filesupport {

OCRCByteStream::~OCRCByteStream() = default;

void OCRCByteStream::Put(std::uint8_t inValue) {
    mRegister = UpdateCRC32(mRegister, inValue);
    mSink.Put(inValue);
}

void OCRCByteStream::WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) {
    mRegister = UpdateCRC32(mRegister, inSource, inCount);
    mSink.WriteBlock(inSource, inCount);
}

void OCRCByteStream::CurPos(std::uint64_t inPosition) {
    mSink.CurPos(inPosition);
}

std::uint64_t OCRCByteStream::CurPos() const {
    return mSink.CurPos();
}

ICRCByteStream::~ICRCByteStream() = default;

std::uint8_t ICRCByteStream::Get() {
    auto const value = mSource.Get();
    mRegister = UpdateCRC32(mRegister, value);
    return value;
}

void ICRCByteStream::ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) {
    mSource.ReadBlock(outDestination, inCount);
    mRegister = UpdateCRC32(mRegister, outDestination, inCount);
}

void ICRCByteStream::CurPos(std::uint64_t inPosition) {
    mSource.CurPos(inPosition);
}

std::uint64_t ICRCByteStream::CurPos() const {
    return mSource.CurPos();
}

std::uint64_t ICRCByteStream::Length() const {
    return mSource.Length();
}

} // namespace brindle::filesupport
