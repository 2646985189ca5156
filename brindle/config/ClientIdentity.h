#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

namespace brindle::config {

// Who the client is, for the names of its folders and its log, and for the dialogs. The host sets
// it at start-up, before other threads read it. A getter's reference stays valid for the life of
// the library and shows later changes.

BRN_API void SetClientName(UTF16String const& inName);
BRN_API UTF16String const& GetClientName() noexcept;

BRN_API void SetClientVersion(UTF16String const& inVersion);
BRN_API UTF16String const& GetClientVersion() noexcept;

BRN_API void SetClientInternalVersion(UTF16String const& inVersion);
BRN_API UTF16String const& GetClientInternalVersion() noexcept;

BRN_API void SetClientBuildNumber(UTF16String const& inNumber);
BRN_API UTF16String const& GetClientBuildNumber() noexcept;

BRN_API void SetCompanyName(UTF16String const& inName);
BRN_API UTF16String const& GetCompanyName() noexcept;

/// The version of this library, "2.0.0.161039".
BRN_API UTF16String GetVersionString();

} // namespace brindle::config
