#include "filesupport/src/files/StreamFailure.h"

#include <brindle/filesupport/ByteStream.h>

namespace brindle::filesupport {

namespace {

template <typename Exception>
[[noreturn]] void Throw(File const& inFile, config::FileOperation inOperation,
                        platform::ErrorCode inError) {
    Exception exception;
    exception.SetPath(inFile.FullPath());
    exception.SetFailure(inOperation, inError);
    throw exception;
}

} // namespace

void ThrowOnFailure(File const& inFile, config::FileOperation inOperation,
                    platform::ErrorCode inError) {
    if (inError == platform::kError_EndOfFile) {
        Throw<eof_error>(inFile, inOperation, inError);
    }
    if (inError != platform::kError_None) {
        Throw<io_error>(inFile, inOperation, inError);
    }
}

} // namespace brindle::filesupport
