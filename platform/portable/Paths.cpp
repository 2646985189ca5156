#include "platform/Paths.h"

#include "platform/Files.h"
#include "platform/Volumes.h"
#include "platform/portable/Ascii.h"
#include "platform/portable/ByteEscapes.h"
#include "utility/src/base/Mutex.h"

#include <array>
#include <memory>

namespace brindle::platform {

namespace {

struct MappedVolume {
    std::string directory; // absolute, without a separator at its end, so empty for the root
    VolumeKind kind = VolumeKind::kFixed;
};

constexpr std::size_t kLetters = 26;
constexpr char kRootLetter = 'C';

utility::Mutex S_volumesMutex;
std::array<std::unique_ptr<MappedVolume>, kLetters> S_volumes BRN_GUARDED_BY(S_volumesMutex);

constexpr bool IsSeparator(std::uint16_t inUnit) {
    return inUnit == '\\' || inUnit == '/';
}

/// `A` to `Z` for an ASCII letter of either case, otherwise 0.
constexpr char DriveLetter(std::uint16_t inUnit) {
    auto const upper = static_cast<std::uint16_t>(inUnit & ~0x20);
    return 'A' <= upper && upper <= 'Z' ? static_cast<char>(upper) : '\0';
}

constexpr std::size_t VolumeIndex(char inLetter) {
    return static_cast<std::size_t>(inLetter - 'A');
}

/// The length of "\\?\" or of "\\?\UNC\" in front of the path.
struct Prefix {
    std::size_t length = 0;
    bool isNetwork = false;
};

Prefix LongPathPrefix(UTF16String const& inPath) {
    if (inPath.size() < 4 || !IsSeparator(inPath[0]) || !IsSeparator(inPath[1]) ||
        inPath[2] != '?' || !IsSeparator(inPath[3])) {
        return {};
    }
    if (inPath.size() >= 8 && DriveLetter(inPath[4]) == 'U' && DriveLetter(inPath[5]) == 'N' &&
        DriveLetter(inPath[6]) == 'C' && IsSeparator(inPath[7])) {
        return {8, true};
    }
    return {4, false};
}

Result<std::string> DirectoryOfDrive(char inLetter) {
    if (inLetter == kRootLetter) {
        return {};
    }
    utility::MutexLock const lock(S_volumesMutex);
    auto const& volume = S_volumes[VolumeIndex(inLetter)];
    if (volume == nullptr) {
        return {{}, kError_PathNotFound};
    }
    return {volume->directory, kError_None};
}

} // namespace

Result<std::string> NativePath(UTF16String const& inPath) {
    if (inPath.find(std::uint16_t{0}) != UTF16String::npos) {
        return {{}, kError_InvalidName};
    }

    auto const prefix = LongPathPrefix(inPath);
    auto const* rest = inPath.data() + prefix.length;
    auto count = inPath.size() - prefix.length;
    auto const skip = [&rest, &count](std::size_t inUnits) {
        rest += inUnits;
        count -= inUnits;
    };

    Result<std::string> native;
    if (prefix.isNetwork) {
        native.value = "/net/";
    } else if (count >= 2 && rest[1] == ':' && DriveLetter(rest[0]) != '\0') {
        native = DirectoryOfDrive(DriveLetter(rest[0]));
        if (!native) {
            return native;
        }
        skip(2);
        // A drive alone is its directory, and what follows it directly is below that.
        bool const isDriveAlone = count == 0 && !native.value.empty();
        if (!isDriveAlone && (count == 0 || !IsSeparator(rest[0]))) {
            native.value += '/';
        }
    } else if (count >= 3 && IsSeparator(rest[0]) && IsSeparator(rest[1]) &&
               !IsSeparator(rest[2])) {
        native.value = "/net/";
        skip(2);
    }
    AppendBytes(native.value, rest, count, ByteForm::kPath);
    return native;
}

UTF16String PathFromNative(std::string const& inNativePath) {
    UTF16String path;
    auto const beginsLikeADrive = inNativePath.size() >= 2 && inNativePath[1] == ':' &&
                                  DriveLetter(static_cast<unsigned char>(inNativePath[0])) != '\0';
    if (beginsLikeADrive) {
        path = u".\\"_utf16;
    } else if (!inNativePath.empty() && inNativePath[0] == '/') {
        path = u"C:"_utf16;
    }
    AppendText(path, inNativePath.data(), inNativePath.size(), ByteForm::kPath);
    return path;
}

void NameFromNative(char const* inName, std::size_t inLength, UTF16String& outName) {
    outName.clear();
    AppendText(outName, inName, inLength, ByteForm::kPath);
}

ErrorCode MapVolume(char inLetter, UTF16String const& inDirectory) {
    auto const letter = DriveLetter(static_cast<unsigned char>(inLetter));
    if (letter == '\0' || letter == kRootLetter) {
        return kError_InvalidParameter;
    }

    std::unique_ptr<MappedVolume> volume;
    if (!inDirectory.empty()) {
        auto const info = Inspect(inDirectory);
        if (!info) {
            return info.error;
        }
        if (info.value.kind != FileKind::kDirectory) {
            return kError_NotADirectory;
        }
        auto native = AbsoluteNativePath(inDirectory);
        if (!native) {
            return native.error;
        }
        volume = std::make_unique<MappedVolume>();
        volume->kind = KindOfVolume(native.value);
        volume->directory = std::move(native.value);
        while (!volume->directory.empty() && volume->directory.back() == '/') {
            volume->directory.pop_back();
        }
    }
    utility::MutexLock const lock(S_volumesMutex);
    S_volumes[VolumeIndex(letter)].swap(volume);
    return kError_None;
}

std::vector<Volume> Volumes() {
    auto const rootKind = KindOfVolume("/");
    std::vector<Volume> volumes;
    utility::MutexLock const lock(S_volumesMutex);
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
        if (letter == kRootLetter) {
            volumes.push_back({letter, rootKind});
        } else if (auto const& volume = S_volumes[VolumeIndex(letter)]; volume != nullptr) {
            volumes.push_back({letter, volume->kind});
        }
    }
    return volumes;
}

} // namespace brindle::platform
