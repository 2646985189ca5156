// A program on a GLib main loop that a developer can look into while it runs:
//
//     example_console_host &
//     brindle console --attach=Player
//
// It traces, asserts, and logs where a log is wanted: in "Player Log.txt" among the user's
// settings. Its own command is "player.speed".
#include <brindle/config/ClientIdentity.h>
#include <brindle/console/Command.h>
#include <brindle/console/CommandRegistry.h>
#include <brindle/console/Console.h>
#include <brindle/console/ConsoleLogFile.h>
#include <brindle/console/Listen.h>
#include <brindle/debug/Asserts.h>
#include <brindle/debug/Trace.h>
#include <brindle/debug/TraceCategory.h>
#include <brindle/threads/AsyncEventLoopAdaptor.h>
#include <brindle/threads/EventLoop.h>
#include <brindle/utility/StringStreams.h>
#include <csignal>
#include <exception>
#include <glib-unix.h>
#include <iostream>

namespace {

using namespace brindle;

std::int32_t S_speed = 1; // is used on the main loop's thread only
std::int32_t S_frame = 0;

// Shows the speed, or sets it: "player.speed 2".
class Speed : public console::Command {
public:
    using Command::Command;
    void Execute(UTF16String const& inArguments, UTF16OutputStream& ioOut) override {
        if (!inArguments.empty()) {
            iUTF16StringStream(inArguments) >> S_speed;
            BRN_ASSERT_MESSAGE(S_speed != 0, "the player stands still");
        }
        ioOut << u"speed " << S_speed << u'\n';
    }
};

console::Command* MakeSpeed(UTF16String const& inName, UTF16String const& inHelp) {
    return new Speed(inName, inHelp);
}

gboolean Dispatch(gint, GIOCondition, gpointer) try {
    threads::DispatchMessages();
    return G_SOURCE_CONTINUE;
} catch (std::exception const& error) { // an exception must not leave through GLib
    std::cerr << error.what() << '\n';
    return G_SOURCE_CONTINUE;
}

gboolean Play(gpointer) {
    static debug::TraceCategory const category("player"_utf8);
    S_frame += S_speed;
    BRN_TRACE(category, 7, "frame " << S_frame);
    return G_SOURCE_CONTINUE;
}

gboolean Quit(gpointer inLoop) {
    g_main_loop_quit(static_cast<GMainLoop*>(inLoop));
    return G_SOURCE_REMOVE;
}

void Run() {
    GMainLoop* const loop = g_main_loop_new(nullptr, FALSE);
    guint const messages =
        g_unix_fd_add(threads::EventLoopDescriptor(), G_IO_IN, Dispatch, nullptr);
    guint const playing = g_timeout_add(40, Play, nullptr);
    guint const ending = g_unix_signal_add(SIGTERM, Quit, loop);

    // Commands run on the loop, so they may use what belongs to its thread.
    auto const listener =
        console::Listen(u"Player"_utf16, threads::AdaptCurrentEventLoopAsExecutor());
    if (listener.IsListening()) {
        std::cout << "listening\n" << std::flush;
    } else { // no reason not to run
        std::cerr << listener.Failure() << '\n';
    }
    g_main_loop_run(loop);

    static_cast<void>(ending); // removed by what it did
    g_source_remove(playing);
    g_source_remove(messages);
    g_main_loop_unref(loop);
}

} // namespace

int main() try {
    config::SetCompanyName(UTF16String()); // the preferences are in Player/ among the user's
    config::SetClientName(u"Player"_utf16);
    config::SetClientInternalVersion(UTF16String());
    console::Initialize();
    console::CommandRegistry::RegisterCommand(
        u"player.speed"_utf16, u"player.speed [speed] - Shows or sets the speed."_utf16, MakeSpeed);
    Run();
    console::Terminate();
    debug::ShutdownTraceManager();
    console::ConsoleLogFile::Terminate();
} catch (std::exception const& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
