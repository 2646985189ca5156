// An epoll loop: a pool computes pi, the loop shows how far it is, and preferences keep the result.
#include <atomic>
#include <brindle/config/ClientIdentity.h>
#include <brindle/config/Describe.h>
#include <brindle/proplist/Preferences.h>
#include <brindle/threads/AsyncEventLoopAdaptor.h>
#include <brindle/threads/AsyncThreadedExecutor.h>
#include <brindle/threads/EventLoop.h>
#include <brindle/threads/Progress.h>
#include <brindle/threads/TaskGroup.h>
#include <iostream>
#include <sys/epoll.h>
#include <unistd.h>

int main() try {
    using namespace brindle;
    config::SetClientName(u"Pi"_utf16);
    auto const file = proplist::utils::PreferencesFile();
    proplist::PropList preferences;
    proplist::utils::LoadPropList(file, preferences);
    auto const pool =
        threads::CreateAsyncThreadedExecutor("pi", -1, threads::kThreadPriorityNormal);
    auto const loop = threads::AdaptCurrentEventLoopAsExecutor();
    std::atomic<int> inside{0}, rows{0}; // the points of a quarter of a circle
    bool isDone = false;

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
        isDone = true;
    });

    int const epoll = epoll_create1(EPOLL_CLOEXEC);
    epoll_event event{EPOLLIN, {}}; // beside the loop's other descriptors
    epoll_ctl(epoll, EPOLL_CTL_ADD, threads::EventLoopDescriptor(), &event);
    while (!isDone) {
        if (epoll_wait(epoll, &event, 1, -1) == 1) {
            threads::DispatchMessages();
        }
    }
    close(epoll);
    proplist::utils::SavePropList(file, preferences);
} catch (std::exception const& error) {
    std::cerr << brindle::config::DescribeInUTF8(error) << '\n';
    return 1;
}
