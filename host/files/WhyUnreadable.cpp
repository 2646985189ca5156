#include "host/files/WhyUnreadable.h"

#include <brindle/filesupport/FileKind.h>

namespace brindle::host {

std::string WhyUnreadable(filesupport::File const& inFile) {
    switch (filesupport::KindOf(inFile)) {
    case filesupport::FileKind::kMissing:
        return "no such file or directory";
    case filesupport::FileKind::kDirectory:
        return "is a directory";
    case filesupport::FileKind::kRegular:
        return "cannot be read";
    default:
        return "is no regular file";
    }
}

} // namespace brindle::host
