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
    }
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
};

} // namespace brindle::tests
