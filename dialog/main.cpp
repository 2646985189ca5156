// brindle-dialog: shows one dialog of the library's asserts and contracts. The library starts it
// with a socket as standard input, over which the question comes in and the answer goes out.

#include "dialog/ClipboardText.h"
#include "dialog/DialogWindow.h"
#include "dialog/WaitingParent.h"

#include <glib-unix.h>
#include <gtk/gtk.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <string>

namespace {

std::string ReadAll(int inDescriptor) {
    std::string text;
    std::array<char, 65536> piece;
    for (ssize_t count = 0; (count = ::read(inDescriptor, piece.data(), piece.size())) > 0;) {
        text.append(piece.data(), static_cast<std::size_t>(count));
    }
    return text;
}

void Answer(std::string const& inLine) {
    static_cast<void>(::write(STDIN_FILENO, (inLine + '\n').c_str(), inLine.size() + 1));
}

gboolean OnHangUp(gint, GIOCondition, gpointer) {
    brindle::dialog::EndDialog();
    return G_SOURCE_REMOVE;
}

} // namespace

int main() {
    using namespace brindle;
    auto const question = debug::ReadRequest(ReadAll(STDIN_FILENO));
    if (!question) {
        std::fputs("brindle-dialog: started by libbrindle, not by hand\n", stderr);
        return 2;
    }
    std::signal(SIGPIPE, SIG_IGN);
    dialog::ContinueInChild();
    if (gtk_init_check(nullptr, nullptr) != TRUE) {
        Answer(debug::kNoDisplay);
        return 1;
    }
    // A program that ends takes its question with it.
    guint const watch = g_unix_fd_add(STDIN_FILENO, G_IO_HUP, OnHangUp, nullptr);
    int const button = dialog::RunDialog(*question);
    g_source_remove(watch);
    Answer(std::to_string(button));
    dialog::KeepClipboard(dialog::ReleaseParent);
}
