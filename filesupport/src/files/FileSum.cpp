#include <brindle/filesupport/FileSum.h>

#include <brindle/filesupport/CRCByteStream.h>
#include <brindle/filesupport/CountingByteStream.h>
#include <brindle/filesupport/PlatformByteStreams.h>

namespace brindle::filesupport {

std::uint32_t SumOf(File const& inFile, CopyProgress const& inProgress) {
    OCountingByteStream nothing;
    OCRCByteStream sum(nothing);
    CopyBytes(IPlatformByteStream(inFile), sum, inProgress);
    return sum.Value();
}

} // namespace brindle::filesupport
