#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/Dir.h>
#include <brindle/filesupport/File.h>
#include <brindle/utility/TextTypes.h>

#include <cstdint>

namespace brindle::filesupport {

/// If `inFile` is an existing shortcut (its extension is ".lnk" in any case) whose target exists:
/// sets `outResolvedFile` or `outResolvedDir` to the target and `outIsDir` to which of them it is,
/// and returns true. Otherwise returns false and sets nothing.
BRN_API bool ResolveIfAlias(File const& inFile, File& outResolvedFile, Dir& outResolvedDir,
                            bool& outIsDir);

/// Replaces a shortcut to a file by that file. Anything else stays as it is.
BRN_API void ResolveIfAliasFileOnly(File& ioFile);

/// Writes a shortcut to the target, which need not exist; a failure is ignored.
BRN_API void CreateShortCut(File const& inShortcut, Dir const& inTarget);
BRN_API void CreateShortCut(File const& inShortcut, File const& inTarget);

/// The shortcut operations of `utility::FileUtils`, for clients of this namespace.
class BRN_API FileUtils {
public:
    /// `utility::FileUtils::ResolveIT` and `utility::FileUtils::CreateLink`.
    static std::int32_t ResolveIT(UTF16String& ioPath, bool& outIsDirectory);
    static std::int32_t CreateLink(UTF16String const& inTarget, UTF16String const& inLinkPath,
                                   UTF16String const& inDescription);
};

} // namespace brindle::filesupport
