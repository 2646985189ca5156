#include "host/plist/LoadList.h"

#include "host/files/FileErrors.h"
#include "host/files/Input.h"

#include <brindle/config/ScopedManagers.h>
#include <brindle/proplist/PropListUtils.h>
#include <brindle/xml/Parser.h>

#include <map>
#include <memory>
#include <string>

namespace brindle::host {

using namespace literals;

namespace {

/// While it exists, a reported error is thrown. The one that reading reports is a later version.
class ThrowReports : public config::ErrorManager {
public:
    void ThrowErrorImpl(config::ErrorLevel, char const*, std::uint32_t, std::int32_t, bool,
                        config::ReplacementValue const&, config::ReplacementValue const&,
                        config::ReplacementValue const&, config::ReplacementValue const&) override {
        throw unreadable_error("is a property list of a later version");
    }

private:
    config::ScopedErrorManager const mInstalled{*this};
};

/// Where and why a document is damaged.
std::string FaultText(xml::XMLParseFault const& inFault) {
    std::string text = "cannot be read as a property list";
    if (inFault.line != 0) {
        text +=
            ": line " + std::to_string(inFault.line) + ", column " + std::to_string(inFault.column);
    }
    return *inFault.reason != '\0' ? text + ": " + inFault.reason : text;
}

/// Finds out whether a document contains a list at all.
class ListSeeker final : public xml::AbstractParseHandler {
public:
    explicit ListSeeker(bool& outFound) noexcept : mFound(outFound) {}

    void StartElement(UTF16String const& inName,
                      std::map<UTF16String, UTF16String> const&) override {
        mFound = mFound || inName == u"prop.list"_utf16;
    }

private:
    bool& mFound;
};

bool HoldsList(UTF8String const& inText) {
    bool found = false;
    std::unique_ptr<xml::AbstractParseHandler> handler = std::make_unique<ListSeeker>(found);
    return xml::GetParser(handler)->ParseBuffer(inText) == xml::kXMLParseStatus_Success && found;
}

} // namespace

void LoadList(std::string const& inName, proplist::PropList& outList) {
    UTF8String const text = ReadAll(inName);
    ThrowReports const throwReports;
    auto const result = proplist::utils::TryReadPropList(text, outList);
    if (result.status != proplist::kPropListLoad_Done) {
        throw unreadable_error(FaultText(result.fault));
    }
    // A document of another kind is read as an empty list.
    if (outList.IsEmpty() && !HoldsList(text)) {
        throw unreadable_error("is no property list");
    }
}

} // namespace brindle::host
