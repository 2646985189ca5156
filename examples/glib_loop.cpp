// A thread that runs a GLib main loop as an executor: a worker reports to it, and ends it.
#include <brindle/threads/AsyncEventLoopAdaptor.h>
#include <brindle/threads/EventLoop.h>
#include <glib-unix.h>
#include <iostream>
#include <thread>

namespace {

gboolean Dispatch(gint, GIOCondition, gpointer) try {
    brindle::threads::DispatchMessages();
    return G_SOURCE_CONTINUE;
} catch (std::exception const& error) { // an exception must not leave through GLib
    std::cerr << error.what() << '\n';
    return G_SOURCE_CONTINUE;
}

} // namespace

int main() try {
    using namespace brindle::threads;
    GMainLoop* const loop = g_main_loop_new(nullptr, FALSE);
    guint const source = g_unix_fd_add(EventLoopDescriptor(), G_IO_IN, Dispatch, nullptr);
    auto const executor = AdaptCurrentEventLoopAsExecutor();

    std::thread worker([&] {
        for (int percent = 0; percent <= 100; percent += 50) {
            executor->Post([percent] { std::cout << percent << " %\n"; }, 0);
        }
        executor->Post([&] { g_main_loop_quit(loop); }, 0);
    });
    g_main_loop_run(loop);
    worker.join();
    g_source_remove(source);
    g_main_loop_unref(loop);
} catch (std::exception const& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
