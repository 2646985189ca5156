#include "platform/Terminal.h"

#include <fcntl.h>
#include <initializer_list>
#include <sys/ioctl.h>
#include <unistd.h>

namespace brindle::platform {

namespace {

int DescriptorOf(StandardStream inStream) noexcept {
    switch (inStream) {
    case StandardStream::kInput:
        return STDIN_FILENO;
    case StandardStream::kOutput:
        return STDOUT_FILENO;
    case StandardStream::kError:
        return STDERR_FILENO;
    }
    return -1;
}

} // namespace

bool IsTerminal(StandardStream inStream) noexcept {
    return ::isatty(DescriptorOf(inStream)) == 1;
}

std::uint32_t TerminalWidth(StandardStream inStream) noexcept {
    winsize size{};
    return ::ioctl(DescriptorOf(inStream), TIOCGWINSZ, &size) == 0 ? size.ws_col : 0u;
}

void ReserveStandardStreams() noexcept {
    for (auto const stream :
         {StandardStream::kInput, StandardStream::kOutput, StandardStream::kError}) {
        if (::fcntl(DescriptorOf(stream), F_GETFD) == -1) {
            // The lowest free number is taken, which is that of the stream.
            int const wrongWay = stream == StandardStream::kInput ? O_WRONLY : O_RDONLY;
            static_cast<void>(::open("/dev/null", wrongWay));
        }
    }
}

} // namespace brindle::platform
