#include <brindle/filesupport/FileKind.h>

#include "platform/Files.h"

namespace brindle::filesupport {

FileKind KindOf(File const& inFile) {
    auto const info = platform::Inspect(inFile.Helper().Path());
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
