#pragma once

#include <brindle/config/ErrorManager.h>

#include <string>
#include <utility>
#include <vector>

namespace brindle::tests {

/// Records what is reported, while it is installed.
class RecordingErrorManager : public config::ErrorManager {
public:
    RecordingErrorManager() { Set(this); }
    ~RecordingErrorManager() override { Set(nullptr); }

    void ThrowErrorImpl(config::ErrorLevel inLevel, char const* inKey, std::uint32_t inModule,
                        std::int32_t inCode, bool inDeferrable,
                        config::ReplacementValue const& inFirst,
                        config::ReplacementValue const& inSecond,
                        config::ReplacementValue const& inThird,
                        config::ReplacementValue const& inFourth) override {
        if (onError) {
            boost::function<void()> const action = std::move(onError);
            onError.clear();
            action();
        }
        level = inLevel;
        key = inKey;
        module = inModule;
        codes.push_back(inCode);
        flags = {inDeferrable, IsErrorReportingDeferred()};
        values = {inFirst, inSecond, inThird, inFourth};
        mLines += std::to_string(inLevel) + ' ' + std::to_string(inModule) + ' ' +
                  std::to_string(inCode) + (inDeferrable ? " " : " at once ") + inKey + '\n';
    }
    /// Level, module, code and key of the errors since the last call, a line each.
    std::string TakeLines() { return std::exchange(mLines, {}); }
    using ErrorManager::AddDeferredErrorReporter;
    using ErrorManager::RemoveDeferredErrorReporter;

    using Codes = std::vector<std::int32_t>;
    using Flags = std::pair<bool, bool>;
    boost::function<void()> onError; ///< done once, at the next error
    Codes codes;                     ///< of all errors; what follows is of the last
    config::ErrorLevel level{};
    std::string key;
    std::uint32_t module = 0;
    Flags flags; ///< may be deferred, is deferred
    std::vector<config::ReplacementValue> values;

private:
    std::string mLines;
};

} // namespace brindle::tests
