#include "host/PropListFile.h"

#include "host/UnreadableFile.h"

#include <brindle/config/ErrorManager.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/filesupport/PlatformByteStreams.h>
#include <brindle/proplist/PropListUtils.h>
#include <brindle/utility/TextTypes.h>
#include <brindle/xml/Parser.h>

#include <map>
#include <memory>

namespace brindle::host {

using namespace literals;

namespace {

/// Stands in for the installed error manager while it lives: what goes wrong is kept to be told
/// with the native path, which only the command knows.
class LoadErrors final : public config::ErrorManager {
public:
    LoadErrors() : mInstalled(Get()) { Set(this); }
    ~LoadErrors() override { Set(mInstalled); }

    void ThrowErrorImpl(config::ErrorLevel, char const*, std::uint32_t, std::int32_t inCode, bool,
                        config::ReplacementValue const&, config::ReplacementValue const&,
                        config::ReplacementValue const&, config::ReplacementValue const&) override {
        constexpr std::int32_t kCode_NewerVersion = 20;
        (inCode == kCode_NewerVersion ? mIsNewer : mHasFailed) = true;
    }

    bool IsNewer() const noexcept { return mIsNewer; }
    bool HasFailed() const noexcept { return mHasFailed; }

private:
    config::ErrorManager* const mInstalled;
    bool mIsNewer = false;
    bool mHasFailed = false;
};

bool IsReadable(filesupport::File const& inFile) {
    try {
        filesupport::IPlatformByteStream const tried(inFile);
        return true;
    } catch (filesupport::file_exception const&) {
        return false;
    } catch (filesupport::byte_stream_exception const&) {
        return false;
    }
}

/// Notes whether a document has a list at all.
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

bool HoldsList(filesupport::File const& inFile) {
    bool found = false;
    std::unique_ptr<xml::AbstractParseHandler> handler = std::make_unique<ListSeeker>(found);
    xml::GetParser(handler)->ParseDocument(inFile.FullPath());
    return found;
}

} // namespace

bool LoadPropListFile(std::string const& inPath, proplist::PropList& outList,
                      Diagnostics& ioDiagnostics) {
    filesupport::File const file = filesupport::FileFromNative(inPath);
    if (!IsReadable(file)) {
        ioDiagnostics.Report(inPath, WhyUnreadable(file));
        return false;
    }
    LoadErrors const errors;
    proplist::utils::LoadPropList(file.FullPath(), outList, false);
    // A document of another kind reads as a list of nothing.
    if (errors.HasFailed() || (outList.IsEmpty() && !HoldsList(file))) {
        ioDiagnostics.Report(inPath, "is no property list, or a damaged one");
        return false;
    }
    if (errors.IsNewer()) {
        ioDiagnostics.Report(inPath, "has a newer version, not all of it may be understood");
    }
    return true;
}

} // namespace brindle::host
