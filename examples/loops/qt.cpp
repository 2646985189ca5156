// A window of Qt: a pool computes pi, the loop shows how far it is, and preferences keep the
// result.
#include <QApplication>
#include <QProgressBar>
#include <atomic>
#include <brindle/config/ClientIdentity.h>
#include <brindle/config/Describe.h>
#include <brindle/glue/Qt.h>
#include <brindle/proplist/Preferences.h>
#include <brindle/threads/AsyncEventLoopAdaptor.h>
#include <brindle/threads/AsyncThreadedExecutor.h>
#include <brindle/threads/Progress.h>
#include <brindle/threads/TaskGroup.h>
#include <iostream>

int main(int argc, char** argv) try {
    using namespace brindle;
    QApplication application(argc, argv);
    config::SetClientName(u"Pi"_utf16);
    auto const file = proplist::utils::PreferencesFile();
    proplist::PropList preferences;
    proplist::utils::LoadPropList(file, preferences);
    glue::QtLoop const attached;
    auto const loop = threads::AdaptCurrentEventLoopAsExecutor();
    auto const pool =
        threads::CreateAsyncThreadedExecutor("pi", -1, threads::kThreadPriorityNormal);
    std::atomic<int> inside{0}, rows{0}; // the points of a quarter of a circle
    QProgressBar bar;
    bar.setRange(0, 1000);
    bar.show();

    threads::Progress<int> progress(loop, [&](int inRows) { bar.setValue(inRows); });
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
        bar.setFormat(QString("is %1").arg(inside / 250000.0));
        std::cout << "was " << preferences.Get("pi", 0.0) << ", " << bar.text().toStdString()
                  << '\n';
        preferences.Set("pi", inside / 250000.0);
        loop->Post([&] { bar.close(); }, 500); // milliseconds; the last window ends the application
    });

    QApplication::exec(); // if the user closes the window earlier, the group is cancelled
    proplist::utils::SavePropList(file, preferences);
} catch (std::exception const& error) {
    std::cerr << brindle::config::DescribeInUTF8(error) << '\n';
    return 1;
}
