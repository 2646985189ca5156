#include "host/plist/LoadList.h"

#include "host/files/FileErrors.h"
#include "host/files/Input.h"

#include <brindle/config/ErrorCodes.h>
#include <brindle/config/ErrorManager.h>
#include <brindle/proplist/PropListUtils.h>
#include <brindle/xml/Parser.h>

#include <map>
#include <memory>

namespace brindle::host {

using namespace literals;

namespace {

/// While it exists, reported errors are thrown, so that the diagnostic can name the file as the
/// user wrote it.
class ThrowReports : public config::ErrorManager {
public:
    ThrowReports() : mBefore(config::ErrorManager::Get()) { config::ErrorManager::Set(this); }
    ~ThrowReports() override { config::ErrorManager::Set(mBefore); }

    void ThrowErrorImpl(config::ErrorLevel, char const*, std::uint32_t, std::int32_t inCode, bool,
                        config::ReplacementValue const&, config::ReplacementValue const&,
                        config::ReplacementValue const&, config::ReplacementValue const&) override {
        throw unreadable_error(inCode == config::kError_PropListVersion.code
                                   ? "is a property list of a later version"
                                   : "cannot be read as a property list");
    }

private:
    config::ErrorManager* const mBefore;
};

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
    proplist::utils::ReadPropList(text, outList);
    // A document of another kind is read as an empty list.
    if (outList.IsEmpty() && !HoldsList(text)) {
        throw unreadable_error("is no property list");
    }
}

} // namespace brindle::host
