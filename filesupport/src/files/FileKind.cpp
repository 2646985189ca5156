#include <brindle/filesupport/FileKind.h>

#include "platform/Files.h"

namespace brindle::filesupport {

FileKind KindOf(File const& inFile) {
    auto ignored = utility::SystemError::kNone;
    return KindOf(inFile, ignored);
}

FileKind KindOf(File const& inFile, utility::SystemError& outCause) {
    auto const info = platform::Inspect(inFile.Helper().Path());
    outCause = info.error;
    if (!info) {
        return FileKind::kMissing;
    }
    switch (info.value.kind) {
    case platform::FileKind::kFile:
        return FileKind::kRegular;
    case platform::FileKind::kDirectory:
        return FileKind::kDirectory;
    case platform::FileKind::kPipe:
        return FileKind::kPipe;
    case platform::FileKind::kSocket:
        return FileKind::kSocket;
    case platform::FileKind::kDevice:
        return FileKind::kDevice;
    case platform::FileKind::kOther:
        break;
    }
    return FileKind::kOther;
}

} // namespace brindle::filesupport
