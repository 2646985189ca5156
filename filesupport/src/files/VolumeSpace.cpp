#include <brindle/filesupport/VolumeSpace.h>

#include "platform/Volumes.h"

#include <brindle/filesupport/FileExceptions.h>

namespace brindle::filesupport {

VolumeSpace SpaceOf(Dir const& inDir) {
    auto const space = platform::SpaceOf(inDir.Helper().Path());
    if (space.error == platform::kError_FileNotFound) {
        throw config::Because(dir_not_found_exception(inDir), config::FileOperation::kInspect,
                              space.error);
    }
    if (!space) {
        throw config::Because(dir_exception(inDir), config::FileOperation::kInspect, space.error);
    }
    return {space.value.available, space.value.total};
}

} // namespace brindle::filesupport
