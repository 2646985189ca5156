#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

namespace brindle::config {

/// Sets the name of the client, which appears in the names of its folders and its log, and in
/// dialogs.
///
/// This and the other setters are for the host's start-up, before other threads read what they set.
/// The reference that a getter returns stays valid until the process ends and shows later changes.
/// Until it is set, a text says that there is none, such as "No Client Name". Static objects may
/// use all of this in their constructors and destructors. Only the allocator can throw.
BRN_API void SetClientName(UTF16String const& inName);
BRN_API UTF16String const& GetClientName();

/// The version as users see it.
BRN_API void SetClientVersion(UTF16String const& inVersion);
BRN_API UTF16String const& GetClientVersion();

/// The version that names a level of the client's folders.
BRN_API void SetClientInternalVersion(UTF16String const& inVersion);
BRN_API UTF16String const& GetClientInternalVersion();

/// The number of the build. The library itself shows it nowhere.
BRN_API void SetClientBuildNumber(UTF16String const& inNumber);
BRN_API UTF16String const& GetClientBuildNumber();

/// The company whose name is a level of the client's folders.
BRN_API void SetCompanyName(UTF16String const& inName);
BRN_API UTF16String const& GetCompanyName();

/// The version and the build of the library that is loaded, such as "2.0.0.161039".
/// `brindle/Version.h` has those of the headers.
BRN_API UTF16String GetVersionString();

} // namespace brindle::config
