#include "host/setup/HostErrorManager.h"

#include <brindle/utility/Streams.h>

namespace brindle::host {

HostErrorManager::HostErrorManager() : PrintingErrorManager("brindle", utility::streams::Err) {}

void HostErrorManager::ThrowErrorImpl(config::ErrorLevel inLevel, char const* inKey,
                                      std::uint32_t inModule, std::int32_t inCode,
                                      bool inDeferrable, config::ReplacementValue const& inFirst,
                                      config::ReplacementValue const& inSecond,
                                      config::ReplacementValue const& inThird,
                                      config::ReplacementValue const& inFourth) {
    PrintingErrorManager::ThrowErrorImpl(inLevel, inKey, inModule, inCode, inDeferrable, inFirst,
                                         inSecond, inThird, inFourth);
    if (inLevel == config::kErrorLevel_Fatal) {
        throw fatal_error();
    }
}

} // namespace brindle::host
