#include "filesupport/src/files/SourceFile.h"

#include <utility>

namespace brindle::filesupport {

using config::Because;
using config::FileOperation;

platform::OpenFile OpenSourceOrThrow(File const& inFile, FileSharing inSharing) {
    auto source = platform::OpenForReading(inFile.Helper().Path(), SharingFor(inSharing));
    if (source.error == platform::kError_FileNotFound ||
        source.error == platform::kError_PathNotFound) {
        throw Because(file_not_found_exception(inFile), FileOperation::kOpen, source.error);
    }
    if (!source) {
        throw Because(file_exception(inFile), FileOperation::kOpen, source.error);
    }
    return std::move(source.value);
}

std::size_t ReadOrThrow(platform::OpenFile& ioSource, File const& inFile, void* outBytes,
                        std::size_t inCount) {
    auto const count = ioSource.Read(outBytes, inCount);
    if (!count) {
        throw Because(file_exception(inFile), FileOperation::kRead, count.error);
    }
    return count.value;
}

} // namespace brindle::filesupport
