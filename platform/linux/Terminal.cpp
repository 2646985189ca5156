#include "platform/Terminal.h"

#include <unistd.h>

namespace brindle::platform {

bool IsTerminal(StandardStream inStream) noexcept {
    switch (inStream) {
    case StandardStream::kInput:
        return ::isatty(STDIN_FILENO) == 1;
    case StandardStream::kOutput:
        return ::isatty(STDOUT_FILENO) == 1;
    case StandardStream::kError:
        return ::isatty(STDERR_FILENO) == 1;
    }
    return false;
}

} // namespace brindle::platform
