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
            std::exchange(onError, {})();
        }
        codes.push_back(inCode);
        values = {inFirst, inSecond, inThird, inFourth};
        mLines += std::to_string(inLevel) + ' ' + std::to_string(inModule) + ' ' +
                  std::to_string(inCode) + (inDeferrable ? " " : " at once ") + inKey + '\n';
    }
    /// Level, module, code and key of the errors since the last call, a line each.
    std::string TakeLines() { return std::exchange(mLines, {}); }
    using ErrorManager::AddDeferredErrorReporter;
    using ErrorManager::RemoveDeferredErrorReporter;

    using Codes = std::vector<std::int32_t>;
    boost::function<void()> onError;              ///< done once, at the next error
    Codes codes;                                  ///< of all errors
    std::vector<config::ReplacementValue> values; ///< of the last error

private:
    std::string mLines;
};

} // namespace brindle::tests
