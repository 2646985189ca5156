#include "platform/ControllingTerminal.h"

#include "platform/linux/FileDescriptor.h"

#include <fcntl.h>
#include <termios.h>

#include <string_view>

namespace brindle::platform {

namespace {

FileDescriptor OpenInForeground() noexcept {
    FileDescriptor terminal(
        Uninterrupted([] { return ::open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY); }));
    bool const isForeground = terminal.IsOpen() && ::tcgetpgrp(terminal.Get()) == ::getpgrp();
    return isForeground ? std::move(terminal) : FileDescriptor();
}

/// As long as it lives, the terminal shows a line while it is typed and hands it over when it is
/// complete, as it does unless a program has changed that.
class LineInput {
public:
    explicit LineInput(int inTerminal) noexcept : mTerminal(inTerminal) {
        if (::tcgetattr(mTerminal, &mFormer) != 0) {
            return;
        }
        termios settings = mFormer;
        settings.c_iflag |= ICRNL;
        settings.c_oflag |= OPOST | ONLCR;
        settings.c_lflag |= ICANON | ECHO | ISIG;
        mIsChanged = settings.c_iflag != mFormer.c_iflag || settings.c_oflag != mFormer.c_oflag ||
                     settings.c_lflag != mFormer.c_lflag;
        if (mIsChanged) {
            ::tcsetattr(mTerminal, TCSADRAIN, &settings);
        }
    }
    LineInput(LineInput const&) = delete;
    LineInput& operator=(LineInput const&) = delete;
    ~LineInput() {
        if (mIsChanged) {
            ::tcsetattr(mTerminal, TCSADRAIN, &mFormer);
        }
    }

private:
    int const mTerminal;
    termios mFormer{};
    bool mIsChanged = false;
};

bool Write(int inTerminal, std::string_view inText) noexcept {
    while (!inText.empty()) {
        auto const count =
            Uninterrupted([&] { return ::write(inTerminal, inText.data(), inText.size()); });
        if (count <= 0) {
            return false;
        }
        inText.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

} // namespace

std::optional<std::string> AskAtControllingTerminal(std::string const& inText) {
    auto const terminal = OpenInForeground();
    if (!terminal.IsOpen()) {
        return {};
    }
    LineInput const lines(terminal.Get());
    ::tcflush(terminal.Get(), TCIFLUSH);
    if (!Write(terminal.Get(), inText)) {
        return {};
    }
    std::string line;
    for (char byte = 0;;) {
        auto const count = Uninterrupted([&] { return ::read(terminal.Get(), &byte, 1); });
        if (count <= 0) {
            return {};
        }
        if (byte == '\n') {
            return line;
        }
        line += byte;
    }
}

} // namespace brindle::platform
