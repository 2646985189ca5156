#include "platform/ShellLink.h"

#include "platform/FileContent.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "platform/TextEncoding.h"
#include "platform/desktop/DesktopEntry.h"

#include <string>
#include <utility>

namespace brindle::platform {

namespace {

constexpr std::size_t kMostBytes = 64 * 1024;

/// The file's name without ".lnk", under which a desktop shows the link.
UTF16String TitleOf(UTF16String const& inLinkPath) {
    auto const separator = inLinkPath.find_last_of(u"\\/"_utf16);
    auto title = separator == UTF16String::npos ? inLinkPath : inLinkPath.substr(separator + 1);
    auto const dot = title.rfind(std::uint16_t{'.'});
    if (dot != UTF16String::npos && dot > 0) {
        title.resize(dot);
    }
    return title;
}

} // namespace

Result<ShellLinkTarget> ReadShellLink(UTF16String const& inLinkPath) {
    auto const bytes = ReadContent(inLinkPath, kMostBytes);
    if (!bytes) {
        return {{}, bytes.error};
    }
    auto const link = ParseDesktopLink(bytes.value);
    if (!link) {
        return {{}, link.error};
    }
    ShellLinkTarget target;
    target.path = PathFromNative(link.value.path);
    auto const info = Inspect(target.path);
    if (!info) {
        return {{}, info.error};
    }
    target.isDirectory = info.value.kind == FileKind::kDirectory;
    return {std::move(target), kError_None};
}

ErrorCode WriteShellLink(UTF16String const& inTarget, UTF16String const& inLinkPath,
                         UTF16String const& inDescription) {
    if (inTarget.empty()) {
        return kError_PathNotFound;
    }
    auto native = AbsoluteNativePath(inTarget);
    if (!native) {
        return native.error;
    }
    auto const bytes = FormatDesktopLink(
        {std::move(native.value), ToCodePage(TitleOf(inLinkPath)), ToCodePage(inDescription)});
    return ReplaceContent(inLinkPath, bytes.data(), bytes.size());
}

} // namespace brindle::platform
