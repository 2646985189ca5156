#include "filesupport/src/streams/StreamEnd.h"

#include "filesupport/src/streams/BlockStream.h"

namespace brindle::filesupport::impl {

void ThrowEnd(ByteStream_base const& inStream, config::FileOperation inOperation) {
    eof_error exception;
    if (auto const path = BlockStream::PathOf(inStream); !path.empty()) {
        exception.SetPath(path);
        exception.SetFailure(inOperation, utility::SystemError::kEndOfFile);
    }
    throw exception;
}

} // namespace brindle::filesupport::impl
