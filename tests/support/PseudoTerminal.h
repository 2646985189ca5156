#pragma once

#include "tests/support/ChildProcess.h"

#include <gtest/gtest.h>

#include <poll.h>
#include <pty.h>
#include <termios.h>

namespace brindle::tests {

/// A process whose terminal is this test.
class PseudoTerminal {
public:
    explicit PseudoTerminal(std::function<int()> const& inWork)
        : mChild(::forkpty(&mMaster, nullptr, nullptr, nullptr), [&] {
              for (int const key : {SIGINT, SIGQUIT}) {
                  std::signal(key, SIG_DFL); // whoever started the tests may ignore it
              }
              return inWork();
          }) {}
    PseudoTerminal(PseudoTerminal const&) = delete;
    PseudoTerminal& operator=(PseudoTerminal const&) = delete;
    ~PseudoTerminal() { ::close(mMaster); }

    static bool AreThere() {
        return PseudoTerminal([] { return 0; }).mChild.Id() > 0;
    }

    void Type(std::string const& inKeys) const {
        EXPECT_EQ(::write(mMaster, inKeys.data(), inKeys.size()),
                  static_cast<ssize_t>(inKeys.size()));
    }
    /// Types when the program waits for single keys: before that, a key might be a signal.
    void TypeRaw(std::string const& inKeys) const {
        for (int wait = 0; wait < 30'000 && IsCooked(); ++wait) {
            ::poll(nullptr, 0, 1);
        }
        Type(inKeys);
    }

    /// Reads up to the end of this text and returns that; all that there is if the program ends, or
    /// half a minute passes, without it.
    std::string ReadUntil(std::string const& inText) {
        for (std::size_t at; (at = mUnread.find(inText)) == std::string::npos;) {
            pollfd source{mMaster, POLLIN, 0};
            char piece[4096];
            ssize_t const count =
                ::poll(&source, 1, 30'000) == 1 ? ::read(mMaster, piece, sizeof piece) : -1;
            if (count <= 0) {
                return std::exchange(mUnread, {});
            }
            mUnread.append(piece, static_cast<std::size_t>(count));
        }
        auto const text = mUnread.substr(0, mUnread.find(inText) + inText.size());
        mUnread.erase(0, text.size());
        return text;
    }
    void Expect(std::string const& inText) {
        auto const text = ReadUntil(inText);
        EXPECT_NE(text.find(inText), std::string::npos) << text;
    }

    /// Waits half a minute for the end of the process. Its exit status, or minus the signal that
    /// ended it.
    int Wait() {
        ReadUntil("\x01 never printed");
        ::kill(mChild.Id(), SIGHUP); // unless it has ended
        return mChild.Wait();
    }

    /// Whether typed characters are echoed and collected to lines, as for a shell.
    bool IsCooked() const {
        termios state{};
        ::tcgetattr(mMaster, &state);
        return (state.c_lflag & (ICANON | ECHO | ISIG)) == (ICANON | ECHO | ISIG);
    }

private:
    int mMaster = -1;
    ChildProcess mChild;
    std::string mUnread;
};

} // namespace brindle::tests
