#include "host/LoadedList.h"

#include "host/FileSum.h"

#include <brindle/config/ErrorManager.h>
#include <brindle/proplist/PropListUtils.h>

namespace brindle::host {

namespace {

constexpr std::int32_t kCode_LaterVersion = 20;

/// Throws what is reported while it lives, so that the diagnostic can name the file as it was
/// given.
class ThrowReports : public config::ErrorManager {
public:
    ThrowReports() : mBefore(config::ErrorManager::Get()) { config::ErrorManager::Set(this); }
    ~ThrowReports() override { config::ErrorManager::Set(mBefore); }

    void ThrowErrorImpl(config::ErrorLevel, char const*, std::uint32_t, std::int32_t inCode, bool,
                        config::ReplacementValue const&, config::ReplacementValue const&,
                        config::ReplacementValue const&, config::ReplacementValue const&) override {
        throw unreadable_error(inCode == kCode_LaterVersion
                                   ? "is a property list of a later version"
                                   : "cannot be read as a property list");
    }

private:
    config::ErrorManager* const mBefore;
};

} // namespace

void LoadList(filesupport::File const& inFile, proplist::PropList& outList) {
    if (!inFile.Exists()) {
        throw unreadable_error("no such file or directory");
    }
    ThrowReports const throwReports;
    proplist::utils::LoadPropList(inFile.FullPath(), outList, false);
}

} // namespace brindle::host
