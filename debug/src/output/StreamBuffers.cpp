#include <brindle/debug/StreamBuffers.h>

#include "platform/DebugOutput.h"

namespace brindle::debug {

void DebugTrace(char const* inText) {
    platform::WriteDebugOutput(inText);
}

} // namespace brindle::debug
