#include <brindle/config/ClientIdentity.h>

#include <brindle/Version.h>
#include <brindle/utility/Unicode.h>

namespace brindle::config {

namespace {

struct Texts {
    UTF16String clientName = u"No Client Name"_utf16;
    UTF16String clientVersion = u"No Client Version"_utf16;
    UTF16String clientInternalVersion = u"No Client Internal Version"_utf16;
    UTF16String clientBuildNumber = u"No Client Internal Version"_utf16;
    UTF16String companyName = u"No Company Name"_utf16;
};

/// Made at the first use and never destroyed, so that static objects of a client may use them in
/// their constructors and destructors.
Texts& Identity() {
    static Texts& texts = *new Texts;
    return texts;
}

} // namespace

void SetClientName(UTF16String const& inName) {
    Identity().clientName = inName;
}

UTF16String const& GetClientName() {
    return Identity().clientName;
}

void SetClientVersion(UTF16String const& inVersion) {
    Identity().clientVersion = inVersion;
}

UTF16String const& GetClientVersion() {
    return Identity().clientVersion;
}

void SetClientInternalVersion(UTF16String const& inVersion) {
    Identity().clientInternalVersion = inVersion;
}

UTF16String const& GetClientInternalVersion() {
    return Identity().clientInternalVersion;
}

void SetClientBuildNumber(UTF16String const& inNumber) {
    Identity().clientBuildNumber = inNumber;
}

UTF16String const& GetClientBuildNumber() {
    return Identity().clientBuildNumber;
}

void SetCompanyName(UTF16String const& inName) {
    Identity().companyName = inName;
}

UTF16String const& GetCompanyName() {
    return Identity().companyName;
}

UTF16String GetVersionString() {
    return utility::AsciiToUTF16(BRINDLE_VERSION "." BRINDLE_BUILD);
}

} // namespace brindle::config
