#include <brindle/config/ClientIdentity.h>

#include <brindle/Version.h>
#include <brindle/utility/Unicode.h>

namespace brindle::config {

namespace {

UTF16String S_clientName = u"No Client Name"_utf16;
UTF16String S_clientVersion = u"No Client Version"_utf16;
UTF16String S_clientInternalVersion = u"No Client Internal Version"_utf16;
UTF16String S_clientBuildNumber = u"No Client Internal Version"_utf16;
UTF16String S_companyName = u"No Company Name"_utf16;

} // namespace

void SetClientName(UTF16String const& inName) {
    S_clientName = inName;
}

UTF16String const& GetClientName() noexcept {
    return S_clientName;
}

void SetClientVersion(UTF16String const& inVersion) {
    S_clientVersion = inVersion;
}

UTF16String const& GetClientVersion() noexcept {
    return S_clientVersion;
}

void SetClientInternalVersion(UTF16String const& inVersion) {
    S_clientInternalVersion = inVersion;
}

UTF16String const& GetClientInternalVersion() noexcept {
    return S_clientInternalVersion;
}

void SetClientBuildNumber(UTF16String const& inNumber) {
    S_clientBuildNumber = inNumber;
}

UTF16String const& GetClientBuildNumber() noexcept {
    return S_clientBuildNumber;
}

void SetCompanyName(UTF16String const& inName) {
    S_companyName = inName;
}

UTF16String const& GetCompanyName() noexcept {
    return S_companyName;
}

UTF16String GetVersionString() {
    return utility::AsciiToUTF16(BRINDLE_VERSION "." BRINDLE_BUILD);
}

} // namespace brindle::config
