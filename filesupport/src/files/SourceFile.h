#pragma once

#include "platform/Files.h"

#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/PlatformByteStreams.h>

#include <cstddef>

namespace brindle::filesupport {

constexpr platform::Sharing SharingFor(FileSharing inSharing) noexcept {
    return inSharing == kShareWithEverybody ? platform::Sharing::kEverybody
                                            : platform::Sharing::kReaders;
}

/// Opens a file that is read as a whole. Throws `file_not_found_exception`, or `file_exception` on
/// any other failure.
platform::OpenFile OpenSourceOrThrow(File const& inFile, FileSharing inSharing);

/// Reads up to `inCount` bytes, fewer only at the end, and returns how many. Throws
/// `file_exception`.
std::size_t ReadOrThrow(platform::OpenFile& ioSource, File const& inFile, void* outBytes,
                        std::size_t inCount);

} // namespace brindle::filesupport
