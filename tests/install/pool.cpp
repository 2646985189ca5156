// A client whose functions run on the library's threads: both use the same types of Boost.
#include <brindle/threads/AsyncThreadedExecutor.h>

#include <atomic>

int main() {
    using namespace brindle::threads;
    std::atomic<int> sum{0};
    auto const pool = CreateAsyncThreadedExecutor("pool", 2, kThreadPriorityNormal);
    for (int i = 1; i <= 100; ++i) {
        pool->Post([&sum, i] { sum += i; }, 0);
    }
    pool->Shutdown();
    pool->Synchronize();
    return sum == 5050 && !pool->Post([] {}, 0) ? 0 : 1;
}
