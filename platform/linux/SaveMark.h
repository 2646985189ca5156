#pragma once

#include <sys/stat.h>

#include <ctime>

namespace brindle::platform {

/// The file was created to be written by its name, and has not taken its place: its last access is
/// dated to a moment at which no file was. Writing the file leaves that alone.
constexpr timespec kSaveMark{1, 618033900};

inline bool HasSaveMark(struct stat const& inFile) noexcept {
    return S_ISREG(inFile.st_mode) && inFile.st_atim.tv_sec == kSaveMark.tv_sec &&
           inFile.st_atim.tv_nsec == kSaveMark.tv_nsec;
}

} // namespace brindle::platform
