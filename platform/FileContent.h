#pragma once

#include <brindle/utility/TextTypes.h>

#include "platform/Errors.h"

#include <cstddef>
#include <string>

namespace brindle::platform {

/// The whole content of a small file, read without a lock. Errors: those of `OpenForReading`; 13 it
/// has more than `inMost` bytes.
Result<std::string> ReadContent(UTF16String const& inPath, std::size_t inMost);

/// Replaces the file by this content, with the guarantees of `FileReplacement`. Errors: those of
/// its operations.
ErrorCode ReplaceContent(UTF16String const& inPath, void const* inBytes, std::size_t inCount);

/// Appends the content to the file, which is created if it does not exist. Waits while others
/// append to it or replace it, so that from any number of threads and processes every content
/// arrives whole; who reads the file does not matter. A failure removes again what was appended. A
/// link is followed. Errors: 3, 5, 19; 32 somebody writes the file in place; 112, 223.
ErrorCode AppendContent(UTF16String const& inPath, void const* inBytes, std::size_t inCount);

} // namespace brindle::platform
