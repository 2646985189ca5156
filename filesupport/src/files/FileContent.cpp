#include <brindle/filesupport/FileContent.h>

#include "filesupport/src/files/NewVersion.h"
#include "filesupport/src/files/SourceFile.h"

#include <algorithm>
#include <cstdint>

namespace brindle::filesupport {

std::vector<std::uint8_t> ReadFile(File const& inFile, std::size_t inLimit) {
    constexpr std::uint64_t kLeast = 4096;
    constexpr std::uint64_t kMostOnTrust = 16 * 1024 * 1024; // before anything was read
    auto file = OpenSourceOrThrow(inFile, kShareWithEverybody);
    std::vector<std::uint8_t> bytes;
    std::size_t length = 0;
    // There is always room for a byte more than was read, so that the last reading finds the end.
    auto const announced = file.Size().value;
    for (auto room = std::clamp(announced + 1, kLeast, kMostOnTrust);; room *= 2) {
        bytes.resize(inLimit < room ? inLimit + 1 : static_cast<std::size_t>(room));
        length += ReadOrThrow(file, inFile, bytes.data() + length, bytes.size() - length);
        if (length > inLimit) {
            throw config::Because(file_exception(inFile), config::FileOperation::kRead,
                                  platform::kError_FileTooLarge);
        }
        if (length < bytes.size()) {
            bytes.resize(length);
            return bytes;
        }
    }
}

void WriteFile(File const& inFile, void const* inBytes, std::size_t inCount) {
    auto newVersion = BeginOrThrow(inFile, File());
    RequireWritten(inFile, newVersion.Write(inBytes, inCount));
    CommitOrThrow(newVersion, inFile);
}

} // namespace brindle::filesupport
