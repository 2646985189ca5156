#pragma once

#include "platform/Errors.h"

#include <brindle/config/FileFailure.h>
#include <brindle/filesupport/File.h>

namespace brindle::filesupport {

/// Throws `eof_error` for error 38 and `io_error` for every other one, with what was to be done
/// with which file.
void ThrowOnFailure(File const& inFile, config::FileOperation inOperation,
                    platform::ErrorCode inError);

template <typename T>
T ValueOrThrow(File const& inFile, config::FileOperation inOperation,
               platform::Result<T> const& inResult) {
    ThrowOnFailure(inFile, inOperation, inResult.error);
    return inResult.value;
}

} // namespace brindle::filesupport
