#pragma once

#include <brindle/threads/EventLoop.h>

#include <glib-unix.h>

#include <exception>

/// For programs whose loop is GLib's, as with GTK. The library itself does not use GLib.
namespace brindle::glue {

/// Serves the calling thread's executors from its GLib main loop, as long as it exists.
///
///     glue::GLibLoop const attached; // on the thread that runs the main loop
///     auto const loop = threads::AdaptCurrentEventLoopAsExecutor();
///
/// A main loop that a function runs, for a modal dialog, serves them too. Make one for a thread; it
/// may be destroyed on any thread, before the context.
class GLibLoop {
public:
    /// With the default priority, functions run before the window is drawn again; a program whose
    /// threads post without a pause chooses a lower one, such as `G_PRIORITY_DEFAULT_IDLE`. The
    /// calling thread must be the one that runs the context; null stands for the thread's default
    /// context. Throws as `threads::EventLoopDescriptor`.
    explicit GLibLoop(int inPriority = G_PRIORITY_DEFAULT, GMainContext* inContext = nullptr)
        : mSource(g_unix_fd_source_new(threads::EventLoopDescriptor(), G_IO_IN)) {
        // GLib takes the functions of all kinds of sources as one type, and casts them back.
        auto const dispatch = reinterpret_cast<void (*)()>(&Dispatch);
        g_source_set_callback(mSource, reinterpret_cast<GSourceFunc>(dispatch), nullptr, nullptr);
        g_source_set_priority(mSource, inPriority);
        g_source_set_can_recurse(mSource, TRUE);
        g_source_attach(mSource,
                        inContext != nullptr ? inContext : g_main_context_get_thread_default());
    }
    GLibLoop(GLibLoop const&) = delete;
    GLibLoop& operator=(GLibLoop const&) = delete;
    ~GLibLoop() {
        g_source_destroy(mSource);
        g_source_unref(mSource);
    }

private:
    static gboolean Dispatch(gint, GIOCondition, gpointer) noexcept {
        try {
            threads::DispatchMessages();
        } catch (std::exception const& error) { // it must not leave through GLib
            g_log("brindle", G_LOG_LEVEL_WARNING, "%s", error.what());
        } catch (...) {
            g_log("brindle", G_LOG_LEVEL_WARNING, "a function threw what is no std::exception");
        }
        return G_SOURCE_CONTINUE;
    }

    GSource* const mSource;
};

} // namespace brindle::glue
