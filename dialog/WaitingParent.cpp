#include "dialog/WaitingParent.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brindle::dialog {

namespace {

int S_lifeline = -1;

/// Waits for a byte, which says that the child lives on, or for the child's end.
[[noreturn]] void WaitFor(pid_t inChild, int inLifeline) {
    char byte = 0;
    if (::read(inLifeline, &byte, 1) != 1) {
        ::waitpid(inChild, nullptr, 0);
    }
    ::_exit(0);
}

} // namespace

void ContinueInChild() {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        return; // the dialog is worth more than the clipboard
    }
    pid_t const child = ::fork();
    if (child > 0) {
        ::close(STDIN_FILENO); // the library's channel is the child's
        ::close(ends[1]);
        WaitFor(child, ends[0]);
    }
    ::close(ends[0]);
    if (child == 0) {
        S_lifeline = ends[1];
    } else {
        ::close(ends[1]);
    }
}

bool ReleaseParent() {
    if (S_lifeline < 0) {
        return false;
    }
    ::setsid();
    static_cast<void>(::chdir("/"));
    int const nothing = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    ::dup2(nothing, STDIN_FILENO);
    ::dup2(nothing, STDERR_FILENO);
    ::close(nothing);
    static_cast<void>(::write(S_lifeline, "", 1));
    ::close(S_lifeline);
    return true;
}

} // namespace brindle::dialog
