#include "host/files/FileErrors.h"

namespace brindle::host {

using filesupport::FileKind;

namespace {

char const* ReasonToSkip(FileKind inKind) {
    switch (inKind) {
    case FileKind::kDirectory:
        return "has become a directory";
    case FileKind::kPipe:
        return "skipped, it is a FIFO";
    case FileKind::kSocket:
        return "skipped, it is a socket";
    case FileKind::kDevice:
        return "skipped, it is a device";
    default:
        return "skipped, it is no regular file";
    }
}

} // namespace

irregular_error::irregular_error(FileKind inKind)
    : unreadable_error(ReasonToSkip(inKind)), mKind(inKind) {}

} // namespace brindle::host
