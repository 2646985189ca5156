// A loop of Asio: a pool computes pi, the loop shows how far it is, and preferences keep the
// result.
#include <atomic>
#include <boost/asio.hpp>
#include <brindle/config/ClientIdentity.h>
#include <brindle/config/Describe.h>
#include <brindle/proplist/Preferences.h>
#include <brindle/threads/AsyncEventLoopAdaptor.h>
#include <brindle/threads/AsyncThreadedExecutor.h>
#include <brindle/threads/EventLoop.h>
#include <brindle/threads/EventLoopWakeUp.h>
#include <brindle/threads/Progress.h>
#include <brindle/threads/TaskGroup.h>
#include <iostream>

int main() try {
    using namespace brindle;
    config::SetClientName(u"Pi"_utf16);
    auto const file = proplist::utils::PreferencesFile();
    proplist::PropList preferences;
    proplist::utils::LoadPropList(file, preferences);
    boost::asio::io_context context(1);
    auto keepRunning = boost::asio::make_work_guard(context); // also when nothing waits
    threads::EventLoopWakeUp const wakeUp(
        [&] { boost::asio::post(context, [] { threads::DispatchMessages(); }); });
    auto const loop = threads::AdaptCurrentEventLoopAsExecutor();
    auto const pool =
        threads::CreateAsyncThreadedExecutor("pi", -1, threads::kThreadPriorityNormal);
    std::atomic<int> inside{0}, rows{0}; // the points of a quarter of a circle

    threads::Progress<int> progress(loop, [](int percent) { std::clog << percent << " %\n"; });
    threads::TaskGroup work(pool);
    for (int y = 0; y < 1000; ++y) {
        work.Run([&, y] {
            for (int x = 0; x < 1000; ++x) {
                inside += x * x + y * y < 1000 * 1000 ? 1 : 0;
            }
            progress.Set(++rows / 10);
        });
    }
    work.WhenDone(loop, [&](std::exception_ptr) {
        std::cout << "was " << preferences.Get("pi", 0.0) << ", is " << inside / 250000.0 << '\n';
        preferences.Set("pi", inside / 250000.0);
        keepRunning.reset(); // the last handlers run, then `run` returns
    });

    context.run();
    proplist::utils::SavePropList(file, preferences);
} catch (std::exception const& error) {
    std::cerr << brindle::config::DescribeInUTF8(error) << '\n';
    return 1;
}
