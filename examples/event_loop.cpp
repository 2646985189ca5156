// A thread with a plain poll() loop as an executor: another thread has lines printed here.
#include <brindle/threads/AsyncEventLoopAdaptor.h>
#include <brindle/threads/EventLoop.h>
#include <iostream>
#include <poll.h>
#include <thread>

int main() try {
    using namespace brindle::threads;
    auto const loop = AdaptCurrentEventLoopAsExecutor();
    bool isDone = false;

    loop->Post([] { std::cout << "posted here, and run on a later turn\n"; }, 0);
    std::thread other([&] {
        loop->Post([] { std::cout << "posted by another thread\n"; }, 0);
        loop->Post([&] { isDone = true; }, 20); // milliseconds
    });

    pollfd watched{EventLoopDescriptor(), POLLIN, 0}; // beside the loop's other descriptors
    while (!isDone) {
        if (poll(&watched, 1, -1) > 0) {
            DispatchMessages();
        }
    }
    other.join();
    std::cout << "done\n";
} catch (std::exception const& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
