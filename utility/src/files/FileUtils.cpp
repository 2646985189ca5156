#include <brindle/utility/FileUtils.h>

#include <brindle/utility/StringUtils.h>

#include "platform/Directories.h"
#include "platform/FileContent.h"
#include "platform/Files.h"
#include "platform/ShellLink.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <string_view>
#include <utility>

namespace brindle::utility::FileUtils {

namespace {

constexpr std::string_view kIllegalCharacters = "\\/:*?\"<>|";
constexpr std::array<std::string_view, 22> kDeviceNames = {
    "CON",  "PRN",  "AUX",  "NUL",  "COM1", "COM2", "COM3", "COM4", "COM5", "COM6", "COM7",
    "COM8", "COM9", "LPT1", "LPT2", "LPT3", "LPT4", "LPT5", "LPT6", "LPT7", "LPT8", "LPT9"};

bool IsIllegal(std::uint16_t inUnit) {
    return inUnit < 0x80 &&
           kIllegalCharacters.find(static_cast<char>(inUnit)) != std::string_view::npos;
}

constexpr bool IsControl(std::uint16_t inUnit) {
    return 1 <= inUnit && inUnit <= 31;
}

constexpr bool IsDotOrSpace(std::uint16_t inUnit) {
    return inUnit == '.' || inUnit == ' ';
}

std::int32_t ResultOf(platform::ErrorCode inError) {
    constexpr std::uint32_t kFailureOfTheSystem = 0x80070000U;
    return inError == platform::kError_None
               ? 0
               : static_cast<std::int32_t>(kFailureOfTheSystem |
                                           static_cast<std::uint32_t>(inError));
}

} // namespace

bool ReplaceIllegalFileNameCharacters(UTF16String& ioName, std::uint16_t inReplacement) {
    if (ioName.empty()) {
        return false;
    }
    auto const original = ioName;
    bool const isUsable = !IsIllegal(inReplacement) && !IsDotOrSpace(inReplacement);
    auto const replacement = isUsable ? inReplacement : std::uint16_t{'-'};
    std::replace_if(
        ioName.begin(), ioName.end(),
        [](std::uint16_t inUnit) { return IsIllegal(inUnit) || IsControl(inUnit); }, replacement);

    auto const folded = FoldCase(ioName);
    auto const dot = folded.find(std::uint16_t{'.'});
    for (auto const& device : kDeviceNames) {
        auto const foldedDevice = FoldCase(UTF16String(device.begin(), device.end()));
        if (folded == foldedDevice) {
            ioName += replacement;
        } else if (dot == device.size() && folded.compare(0, dot, foldedDevice) == 0) {
            ioName[dot - 1] = replacement;
        }
    }
    if (IsDotOrSpace(ioName.back())) {
        ioName.back() = replacement;
    }
    if (ioName.front() == '.') {
        ioName.front() = replacement;
    }
    return ioName != original;
}

bool GetParentPath(UTF16String const& inPath, UTF16String& outParent) {
    auto parent = inPath.substr(0, inPath.find_last_of(u"\\/"_utf16));
    if (parent.empty()) {
        return false;
    }
    if (parent.back() == '\\') {
        parent.pop_back();
    }
    outParent = std::move(parent);
    return true;
}

void BuildPathSpec(UTF16String const& inDirectory, UTF16String const& inName,
                   UTF16String& outPath) {
    auto path = inDirectory;
    if (!path.empty() && path.back() != '\\') {
        path += '\\';
    }
    path += inName;
    outPath = std::move(path);
}

void CreateNewFile(UTF16String const& inPath) {
    static_cast<void>(platform::CreateEmptyFile(inPath));
}

bool RemoveFile(UTF16String const& inPath) {
    return platform::DeleteFile(inPath) == platform::kError_None;
}

bool FileExists(UTF16String const& inPath) {
    return static_cast<bool>(platform::Inspect(inPath));
}

void SimpleWriteStringToFile(UTF16String const& inPath, UTF8String const& inText) {
    static_cast<void>(platform::ReplaceContent(inPath, inText.data(), inText.size()));
}

void SimpleAppendStringToFile(UTF16String const& inPath, UTF8String const& inText) {
    static_cast<void>(platform::AppendContent(inPath, inText.data(), inText.size()));
}

void ContainedFiles(UTF16String const& inDirectory, std::vector<UTF16String>& ioPaths) {
    platform::DirectoryScan scan(inDirectory);
    platform::DirectoryEntry entry;
    auto const prefix = inDirectory + std::uint16_t{'\\'};
    while (scan.Next(entry)) {
        if (!entry.isDirectory && !entry.isHidden && !entry.isSystem) {
            ioPaths.push_back(prefix + entry.name);
        }
    }
}

UTF16String UniqueFileName(UTF16String const& inDirectory, UTF16String const& inBase,
                           UTF16String const& inExtension) {
    auto const prefix = inDirectory + std::uint16_t{'\\'} + inBase;
    for (std::uint64_t number = 1;; ++number) {
        std::array<char, std::numeric_limits<std::uint64_t>::digits10 + 1> digits{};
        auto* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        auto candidate = prefix;
        candidate.append(digits.data(), end);
        candidate += inExtension;
        if (!platform::IsNameTaken(candidate)) {
            return candidate;
        }
    }
}

std::int32_t ResolveIT(UTF16String& ioPath, bool& outIsDirectory) {
    auto target = platform::ReadShellLink(ioPath);
    if (target) {
        ioPath = std::move(target.value.path);
        outIsDirectory = target.value.isDirectory;
    }
    return ResultOf(target.error);
}

std::int32_t CreateLink(UTF16String const& inTarget, UTF16String const& inLinkPath,
                        UTF16String const& inDescription) {
    return ResultOf(platform::WriteShellLink(inTarget, inLinkPath, inDescription));
}

} // namespace brindle::utility::FileUtils
