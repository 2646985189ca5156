#include <brindle/console/Terminal.h>

#include "platform/Terminal.h"

namespace brindle::console {

bool InputIsTerminal() noexcept {
    return platform::IsTerminal(platform::StandardStream::kInput);
}

bool OutputIsTerminal() noexcept {
    return platform::IsTerminal(platform::StandardStream::kOutput);
}

bool ErrorOutputIsTerminal() noexcept {
    return platform::IsTerminal(platform::StandardStream::kError);
}

std::uint32_t ErrorOutputWidth() noexcept {
    constexpr std::uint32_t kUsualWidth = 80;
    std::uint32_t const width = platform::TerminalWidth(platform::StandardStream::kError);
    return width != 0 ? width : kUsualWidth;
}

void ReserveStandardStreams() noexcept {
    platform::ReserveStandardStreams();
}

} // namespace brindle::console
