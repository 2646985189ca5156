#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/ByteStream.h>
#include <brindle/utility/BoostFunction.h>

#include <cstdint>

namespace brindle::filesupport {

/// Gets the number of bytes that are copied and of those that there are altogether, 0 if that is
/// not known. What it throws ends the copy.
using CopyProgress = boost::function<void(std::uint64_t inDone, std::uint64_t inTotal)>;

/// Copies the rest of a stream, from its present position, in blocks, and returns how many bytes
/// that were:
///
///     CopyBytes(IPlatformByteStream(from), sink, [&](auto inDone, auto) { Show(inDone); });
///
/// A source that knows its length has to have a position as well, and ends with `eof_error` if
/// there is less; the bytes before the end are copied then. Of a source without a length each byte
/// is fetched by `Get`, until `eof_error`. Throws what the streams throw.
BRN_API std::uint64_t CopyBytes(IByteStream& inSource, OByteStream& outSink,
                                CopyProgress const& inProgress = {});
inline std::uint64_t CopyBytes(IByteStream&& inSource, OByteStream& outSink,
                               CopyProgress const& inProgress = {}) {
    return CopyBytes(inSource, outSink, inProgress);
}

} // namespace brindle::filesupport
