#include "platform/FileContent.h"

#include "platform/FileReplacement.h"
#include "platform/Files.h"

#include <algorithm>
#include <utility>

namespace brindle::platform {

Result<std::string> ReadContent(UTF16String const& inPath, std::size_t inMost) {
    auto file = OpenForReading(inPath, Sharing::kEverybody);
    if (!file) {
        return {{}, file.error};
    }
    auto const size = file.value.Size();
    if (!size) {
        return {{}, size.error};
    }
    std::string bytes;
    std::size_t length = 0;
    // There is room for one byte more, which stays empty at the end of the file; a file may also
    // grow meanwhile.
    auto room = static_cast<std::size_t>(std::min<std::uint64_t>(size.value, inMost)) + 1;
    while (room <= inMost + 1) {
        bytes.resize(room);
        auto const count = file.value.Read(bytes.data() + length, room - length);
        if (!count) {
            return {{}, count.error};
        }
        length += count.value;
        if (length < room) {
            bytes.resize(length);
            return {std::move(bytes), kError_None};
        }
        room = room <= inMost ? std::min(2 * room, inMost + 1) : room + 1;
    }
    return {{}, kError_InvalidData};
}

ErrorCode ReplaceContent(UTF16String const& inPath, void const* inBytes, std::size_t inCount) {
    auto newVersion = FileReplacement::Begin(inPath);
    auto error = newVersion.error;
    if (error == kError_None) {
        error = newVersion.value.CheckTarget();
    }
    if (error == kError_None) {
        error = newVersion.value.Write(inBytes, inCount);
    }
    if (error == kError_None) {
        error = newVersion.value.Commit();
    }
    return error;
}

} // namespace brindle::platform
