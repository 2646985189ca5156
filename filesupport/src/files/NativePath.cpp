#include <brindle/filesupport/NativePath.h>

#include "platform/Paths.h"
#include "platform/Volumes.h"

#include <brindle/filesupport/FileExceptions.h>

namespace brindle::filesupport {

File FileFromNative(std::string const& inNativePath) {
    return File(platform::PathFromNative(inNativePath));
}

Dir DirFromNative(std::string const& inNativePath) {
    return Dir(platform::PathFromNative(inNativePath));
}

std::string NativePath(File const& inFile) {
    return platform::NativePath(inFile.Helper().Path()).value;
}

std::string NativePath(Dir const& inDir) {
    return platform::NativePath(inDir.Helper().Path()).value;
}

void MapVolume(char inLetter, Dir const& inDir) {
    auto const error = platform::MapVolume(inLetter, inDir.Helper().Path());
    if (error != platform::kError_None) {
        throw config::Because(dir_exception(inDir), config::FileOperation::kMap, error);
    }
}

} // namespace brindle::filesupport
