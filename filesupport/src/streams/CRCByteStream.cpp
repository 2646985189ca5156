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

} // namespace brindle::filesupport
