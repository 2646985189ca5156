#include <brindle/glue/GLib.h>
#include <brindle/threads/AsyncEventLoopAdaptor.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>

namespace brindle::glue {

namespace {

TEST(GLibLoop, RunsFunctionsByItsPriorityAndInNestedLoopsAsLongAsItExists) {
    GMainContext* const context = g_main_context_new();
    g_main_context_push_thread_default(context);
    auto attached = std::make_unique<GLibLoop>(G_PRIORITY_LOW);
    auto const loop = threads::AdaptCurrentEventLoopAsExecutor();
    std::string ran;
    // A source of the application that is ready at the same time.
    GSource* const idle = g_idle_source_new();
    g_source_set_callback(
        idle,
        [](gpointer ioRan) -> gboolean {
            static_cast<std::string*>(ioRan)->push_back('i');
            return G_SOURCE_REMOVE;
        },
        &ran, nullptr);
    g_source_attach(idle, context);
    auto const runNestedLoop = [&] {
        ran += '(';
        while (ran.back() != '2') { // which only a nested turn can run
            g_main_context_iteration(context, TRUE);
        }
        ran += ')';
    };
    std::thread([&] {
        loop->Post(runNestedLoop, 0);
        loop->Post([&] { ran += '1', throw 1; }, 0);
        loop->Post([&] { ran += '2'; }, 0);
    }).join();
    while (ran.empty() || ran.back() != ')') {
        g_main_context_iteration(context, TRUE);
    }
    EXPECT_EQ(ran, "i(12)");
    attached.reset();
    loop->Post([] { ADD_FAILURE(); }, 0);
    EXPECT_FALSE(g_main_context_iteration(context, FALSE));
    g_source_unref(idle);
    g_main_context_pop_thread_default(context);
    g_main_context_unref(context);
}

} // namespace

} // namespace brindle::glue
