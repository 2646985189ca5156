#include "host/lineedit/HistoryFile.h"

#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/filesupport/PlatformByteStreams.h>
#include <brindle/utility/FileUtils.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <sstream>

namespace brindle::host {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kKeptLines = 1000;
constexpr std::uint32_t kMostBytes = 1 << 20;

/// Creates what is missing, each level for the user alone.
void CreateDirectories(fs::path const& inPath) {
    std::error_code failure;
    if (inPath.has_relative_path() && !fs::exists(inPath, failure)) {
        CreateDirectories(inPath.parent_path());
        if (fs::create_directory(inPath, failure)) {
            fs::permissions(inPath, fs::perms::owner_all, failure);
        }
    }
}

/// The end of the file, from the beginning of a line.
std::string EndOf(std::string const& inPath) {
    try {
        filesupport::IPlatformByteStream stream(filesupport::FileFromNative(inPath),
                                                filesupport::kShareWithEverybody);
        auto const length = stream.Length();
        auto const count = std::min<std::uint64_t>(length, kMostBytes);
        stream.CurPos(length - count);
        std::string text(count, '\0');
        stream.ReadBlock(reinterpret_cast<std::uint8_t*>(text.data()),
                         static_cast<std::uint32_t>(count));
        return count == length ? text : text.substr(text.find('\n') + 1);
    } catch (std::exception const&) {
        return {};
    }
}

UTF8String Joined(std::vector<std::string> const& inLines) {
    UTF8String text;
    for (auto const& line : inLines) {
        text.append(line.begin(), line.end());
        text += '\n';
    }
    return text;
}

} // namespace

HistoryFile::HistoryFile(std::string const& inPath) {
    std::error_code failure;
    fs::path const path = inPath;
    if (!path.is_absolute()) {
        return;
    }
    CreateDirectories(path.parent_path());
    if (!fs::exists(path, failure)) {
        utility::FileUtils::CreateNewFile(filesupport::FileFromNative(inPath).FullPath());
    }
    if (fs::is_regular_file(path, failure)) {
        fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write, failure);
        mPath = inPath;
    }
}

std::vector<std::string> HistoryFile::Read() const {
    std::vector<std::string> lines;
    if (mPath.empty()) {
        return lines;
    }
    std::istringstream text(EndOf(mPath));
    for (std::string line; std::getline(text, line);) {
        lines.push_back(line);
    }
    if (lines.size() > 2 * kKeptLines) {
        lines.erase(lines.begin(), lines.end() - kKeptLines);
        utility::FileUtils::SimpleWriteStringToFile(filesupport::FileFromNative(mPath).FullPath(),
                                                    Joined(lines));
    }
    return lines;
}

void HistoryFile::Append(std::string const& inLine) const {
    if (!mPath.empty()) {
        utility::FileUtils::SimpleAppendStringToFile(filesupport::FileFromNative(mPath).FullPath(),
                                                     Joined({inLine}));
    }
}

std::string HistoryPath(std::string const& inName) {
    auto const directory = [](char const* inVariable) {
        char const* const value = std::getenv(inVariable);
        return fs::path(value != nullptr ? value : "");
    };
    auto state = directory("XDG_STATE_HOME");
    if (!state.is_absolute()) {
        state = directory("HOME") / ".local" / "state";
    }
    return state.is_absolute() ? (state / "brindle" / inName).string() : "";
}

} // namespace brindle::host
