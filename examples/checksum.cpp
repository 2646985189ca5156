// Prints the CRC-32 and the size of the file that it is given.
#include <brindle/config/Describe.h>
#include <brindle/filesupport/BufferedByteStream.h>
#include <brindle/filesupport/ByteStreamOperators.h>
#include <brindle/filesupport/CRCByteStream.h>
#include <brindle/filesupport/CountingByteStream.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/filesupport/PlatformByteStreams.h>
#include <iostream>

int main(int argc, char** argv) try {
    using namespace brindle::filesupport;
    IPlatformByteStream file(FileFromNative(argc > 1 ? argv[1] : ""));
    IBufferedByteStream buffered(file, 65536, 4096);
    OCountingByteStream counter;
    OCRCByteStream crc(counter);
    crc << buffered;
    std::cout << std::hex << crc.Value() << std::dec << ' ' << counter.Count() << '\n';
} catch (std::exception const& error) {
    std::cerr << brindle::config::DescribeInUTF8(error) << '\n';
    return 1;
}
