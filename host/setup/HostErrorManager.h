#pragma once

#include <brindle/config/PrintingErrorManager.h>

#include <exception>

namespace brindle::host {

/// Ends the verb after a fatal error, which has been reported already.
class fatal_error : public std::exception {};

/// Prints every error to standard error, and throws `fatal_error` for a fatal one.
class HostErrorManager : public config::PrintingErrorManager {
public:
    HostErrorManager();

    void ThrowErrorImpl(config::ErrorLevel inLevel, char const* inKey, std::uint32_t inModule,
                        std::int32_t inCode, bool inDeferrable,
                        config::ReplacementValue const& inFirst,
                        config::ReplacementValue const& inSecond,
                        config::ReplacementValue const& inThird,
                        config::ReplacementValue const& inFourth) override;
};

} // namespace brindle::host
