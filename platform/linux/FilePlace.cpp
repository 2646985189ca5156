#include "platform/linux/FilePlace.h"

#include "platform/linux/ErrnoTable.h"

#include <sys/stat.h>

#include <array>
#include <climits>
#include <utility>

namespace brindle::platform {

namespace {

/// In a directory for everybody's temporary files, anybody may plant a link where somebody else's
/// file is expected. There a link is followed only if this process or the owner of the directory
/// made it.
bool IsPlanted(FilePlace const& inLink) {
    struct stat directory {};
    struct stat link {};
    if (::fstat(inLink.directory.Get(), &directory) != 0 ||
        ::fstatat(inLink.directory.Get(), inLink.name.c_str(), &link, AT_SYMLINK_NOFOLLOW) != 0) {
        return true;
    }
    constexpr mode_t kForEverybody = S_ISVTX | S_IWOTH;
    return (directory.st_mode & kForEverybody) == kForEverybody && link.st_uid != ::geteuid() &&
           link.st_uid != directory.st_uid;
}

/// Opens the directory part of a path; the name need not exist.
ErrorCode FindPlace(SystemPath const& inPath, FilePlace& outPlace) {
    if (inPath.Error() != kError_None) {
        return inPath.Error();
    }
    outPlace.name = inPath.TailName();
    if (outPlace.name.empty() || outPlace.name == "." || outPlace.name == "..") {
        return kError_AccessDenied;
    }
    auto const directoryPath = inPath.TailDirectory();
    FileDescriptor directory;
    // A directory may be writable without being readable.
    for (int const access : {O_RDONLY, O_PATH}) {
        directory = FileDescriptor(Uninterrupted([&] {
            return ::openat(inPath.Directory(), directoryPath.c_str(),
                            access | O_DIRECTORY | O_CLOEXEC);
        }));
        if (directory.IsOpen() || errno != EACCES) {
            break;
        }
    }
    if (!directory.IsOpen()) {
        return errno == ENOENT ? kError_PathNotFound : ErrorFromErrno(errno);
    }
    outPlace.directory = std::move(directory); // not earlier: the path may begin at the old one
    return kError_None;
}

} // namespace

Result<FilePlace> PlaceOf(UTF16String const& inPath) {
    FilePlace place;
    auto const error = FindPlace(SystemPath(inPath), place);
    return {std::move(place), error};
}

Result<FilePlace> FollowLinks(UTF16String const& inPath) {
    // The kernel's own limit.
    constexpr int kMostLinks = 40;

    SystemPath const first(inPath);
    if (first.Error() != kError_None) {
        return {{}, first.Error()};
    }
    int base = first.Directory();
    std::string native = first.Tail();
    if (native.empty()) {
        return {{}, kError_PathNotFound};
    }

    FilePlace place;
    for (int links = 0; links <= kMostLinks; ++links) {
        auto const error = FindPlace(SystemPath(base, std::move(native)), place);
        if (error != kError_None) {
            return {{}, error};
        }
        std::array<char, PATH_MAX> link{};
        auto const length =
            ::readlinkat(place.directory.Get(), place.name.c_str(), link.data(), link.size());
        if (length < 0) {
            return {std::move(place), kError_None};
        }
        if (IsPlanted(place)) {
            return {{}, kError_AccessDenied};
        }
        native.assign(link.data(), static_cast<std::size_t>(length));
        base = place.directory.Get();
    }
    return {{}, kError_LinkCircle};
}

ErrorCode RenameInto(FilePlace const& inPlace, int inDirectory, char const* inName) {
    return ::renameat(inDirectory, inName, inPlace.directory.Get(), inPlace.name.c_str()) == 0
               ? kError_None
               : ErrorFromErrno(errno);
}

ErrorCode SyncDirectory(FilePlace const& inPlace) {
    bool const hasFailed =
        Uninterrupted([&] { return ::fsync(inPlace.directory.Get()); }) != 0 && errno == EIO;
    return hasFailed ? kError_IODevice : kError_None;
}

} // namespace brindle::platform
