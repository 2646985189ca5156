#include <brindle/console/Terminal.h>

#include "platform/Terminal.h"

namespace brindle::console {

bool OutputIsTerminal() noexcept {
    return platform::IsTerminal(platform::StandardStream::kOutput);
}

bool ErrorOutputIsTerminal() noexcept {
    return platform::IsTerminal(platform::StandardStream::kError);
}

} // namespace brindle::console
