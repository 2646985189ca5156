#pragma once

#include <brindle/config/FileFailure.h>
#include <brindle/filesupport/ByteStream.h>

namespace brindle::filesupport::impl {

/// Throws `eof_error`: the operation would go past the end of a stream. The exception has the
/// operation, the cause and the path if the stream works on a file, itself or through other
/// filters.
[[noreturn]] void ThrowEnd(ByteStream_base const& inStream, config::FileOperation inOperation);

} // namespace brindle::filesupport::impl
