#pragma once

#include <brindle/config/ErrorManager.h>

#include <exception>

namespace brindle::host {

/// A fatal error was reported: the verb ends here.
class fatal_error : public std::exception {};

/// Writes every error to standard error, as the installed localiser words it, and throws
/// `fatal_error` for a fatal one.
class HostErrorManager : public config::ErrorManager {
public:
    void ThrowErrorImpl(config::ErrorLevel inLevel, char const* inKey, std::uint32_t inModule,
                        std::int32_t inCode, bool inDeferrable,
                        config::ReplacementValue const& inFirst,
                        config::ReplacementValue const& inSecond,
                        config::ReplacementValue const& inThird,
                        config::ReplacementValue const& inFourth) override;
};

} // namespace brindle::host
