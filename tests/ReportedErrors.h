#pragma once

#include <brindle/config/ErrorManager.h>

#include <string>
#include <utility>

namespace brindle::tests {

/// Keeps what is reported while it lives, a line each: level, module, code and key.
class ReportedErrors : public config::ErrorManager {
public:
    ReportedErrors() { Set(this); }
    ~ReportedErrors() override { Set(nullptr); }
    void ThrowErrorImpl(config::ErrorLevel inLevel, char const* inKey, std::uint32_t inModule,
                        std::int32_t inCode, bool inDeferrable, config::ReplacementValue const&,
                        config::ReplacementValue const&, config::ReplacementValue const&,
                        config::ReplacementValue const&) override {
        mLines += std::to_string(inLevel) + ' ' + std::to_string(inModule) + ' ' +
                  std::to_string(inCode) + (inDeferrable ? " " : " at once ") + inKey + '\n';
    }
    /// The lines since the last call.
    std::string Take() { return std::exchange(mLines, {}); }

private:
    std::string mLines;
};

} // namespace brindle::tests
