// A window of GTK: a pool computes pi, the loop shows how far it is, and preferences keep the
// result.
#include <atomic>
#include <brindle/config/ClientIdentity.h>
#include <brindle/config/Describe.h>
#include <brindle/glue/GLib.h>
#include <brindle/proplist/Preferences.h>
#include <brindle/threads/AsyncEventLoopAdaptor.h>
#include <brindle/threads/AsyncThreadedExecutor.h>
#include <brindle/threads/Progress.h>
#include <brindle/threads/TaskGroup.h>
#include <gtk/gtk.h>
#include <iostream>

int main(int argc, char** argv) try {
    using namespace brindle;
    gtk_init(&argc, &argv);
    config::SetClientName(u"Pi"_utf16);
    auto const file = proplist::utils::PreferencesFile();
    proplist::PropList preferences;
    proplist::utils::LoadPropList(file, preferences);
    glue::GLibLoop const attached(G_PRIORITY_DEFAULT_IDLE); // drawing comes first
    auto const loop = threads::AdaptCurrentEventLoopAsExecutor();
    auto const pool =
        threads::CreateAsyncThreadedExecutor("pi", -1, threads::kThreadPriorityNormal);
    std::atomic<int> inside{0}, rows{0}; // the points of a quarter of a circle
    GtkWidget* const window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    GtkWidget* const bar = gtk_progress_bar_new();
    gtk_progress_bar_set_show_text(GTK_PROGRESS_BAR(bar), TRUE);
    gtk_container_add(GTK_CONTAINER(window), bar);
    g_signal_connect(window, "destroy", G_CALLBACK(gtk_main_quit), nullptr);
    gtk_widget_show_all(window);

    auto const show = [&](int inRows) {
        gtk_progress_bar_set_fraction(GTK_PROGRESS_BAR(bar), inRows / 1000.0);
    };
    threads::Progress<int> progress(loop, show);
    threads::TaskGroup work(pool);
    for (int y = 0; y < 1000; ++y) {
        work.Run([&, y] {
            for (int x = 0; x < 1000; ++x) {
                inside += x * x + y * y < 1000 * 1000 ? 1 : 0;
            }
            progress.Set(++rows);
        });
    }
    work.WhenDone(loop, [&](std::exception_ptr) {
        std::cout << "was " << preferences.Get("pi", 0.0) << ", is " << inside / 250000.0 << '\n';
        gtk_progress_bar_set_text(GTK_PROGRESS_BAR(bar), "done");
        preferences.Set("pi", inside / 250000.0);
        loop->Post([&] { gtk_widget_destroy(window); }, 500); // milliseconds
    });

    gtk_main();
    proplist::utils::SavePropList(file, preferences);
} catch (std::exception const& error) {
    std::cerr << brindle::config::DescribeInUTF8(error) << '\n';
    return 1;
}
