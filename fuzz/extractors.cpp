// Every extractor on any bytes: the first byte of each round chooses the type of the next value.
// Integers and strings that were read are written as the same bytes again.

#include <brindle/filesupport/BufferByteStream.h>
#include <brindle/filesupport/ByteStreamOperators.h>
#include <brindle/filesupport/StringByteStream.h>

#include <cmath>
#include <cstdlib>
#include <string>
#include <type_traits>

using namespace brindle;
using namespace brindle::filesupport;

namespace {

template <typename Value>
void ReadBack(IByteStream& inStream, std::uint8_t const* inData) {
    auto const start = inStream.CurPos();
    Value value{};
    inStream >> value;

    std::string bytes;
    OStringByteStream sink(bytes);
    sink << value;
    if constexpr (std::is_floating_point_v<Value>) {
        IStringByteStream source(bytes);
        Value again{};
        source >> again;
        if (!std::isfinite(value) || again != value) {
            std::abort();
        }
    } else if (!std::is_same_v<Value, bool> &&
               bytes != std::string(inData + start, inData + inStream.CurPos())) {
        std::abort();
    }
}

using Reader = void (*)(IByteStream&, std::uint8_t const*);

constexpr Reader kReaders[] = {
    ReadBack<bool>,          ReadBack<char>,          ReadBack<std::int8_t>,
    ReadBack<std::uint8_t>,  ReadBack<std::int16_t>,  ReadBack<std::uint16_t>,
    ReadBack<std::int32_t>,  ReadBack<std::uint32_t>, ReadBack<std::int64_t>,
    ReadBack<std::uint64_t>, ReadBack<std::string>,   ReadBack<UTF16String>,
    ReadBack<float>,         ReadBack<double>,        ReadBack<long double>,
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* inData, std::size_t inSize) {
    IBufferByteStream stream(inData, inSize);
    try {
        for (;;) {
            kReaders[stream.Get() % (sizeof kReaders / sizeof *kReaders)](stream, inData);
        }
    } catch (eof_error const&) {
        return 0;
    }
}
