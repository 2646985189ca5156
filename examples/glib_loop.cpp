// A thread that runs a GLib main loop as an executor: a worker reports to it, and ends it.
#include <brindle/glue/GLib.h>
#include <brindle/threads/AsyncEventLoopAdaptor.h>
#include <iostream>
#include <thread>

int main() try {
    using namespace brindle;
    GMainLoop* const loop = g_main_loop_new(nullptr, FALSE);
    glue::GLibLoop const attached;
    auto const executor = threads::AdaptCurrentEventLoopAsExecutor();

    std::thread worker([&] {
        for (int percent = 0; percent <= 100; percent += 50) {
            executor->Post([percent] { std::cout << percent << " %\n"; }, 0);
        }
        executor->Post([&] { g_main_loop_quit(loop); }, 0);
    });
    g_main_loop_run(loop);
    worker.join();
    g_main_loop_unref(loop);
} catch (std::exception const& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
